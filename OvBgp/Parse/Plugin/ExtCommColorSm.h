// BgpParseExtCommColorSm: the plugin that adds the leaves for colors to the rule tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMCOLORSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMCOLORSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommColor.h"

namespace Routing::Bgp {

// The leaf for type 0x03, subtype 0x0b: a color (RFC 9012 section 4.3).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransOpaqueColorRule,
                    BgpParseExtComSubTypeTransOpaqueRuleBase,
                    extCommPktSubtypeTransOpaqueColorExtendedCommunity, extCommColorFactory);

// Adds this leaf to each transitive opaque type rule. The leaf builds ExtCommColor objects. Without
// the plugin, values of its subtype become unclassified ExtCommSubtyped objects. Each operation of
// the plugin traces its name at level 8 of the handle "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommColorSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommColorSm)

  // Adds a new BgpParseExtComSubTypeTransOpaqueColorRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule)
};

// Returns a new color plugin with notification on that has served all announced nodes of
// `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommColorSm, BgpParseExtCommColorSmIs,
                           bgpParseExtCommColorSmFactory);

}  // namespace Routing::Bgp

#endif
