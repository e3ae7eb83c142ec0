// BgpParseExtCommTunnelEncapSm: the plugin that adds the leaves for tunnel encapsulations to the
// rule tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMTUNNELENCAPSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMTUNNELENCAPSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"

namespace Routing::Bgp {

// The leaf for type 0x03, subtype 0x0c: a tunnel encapsulation (RFC 9012 section 4.1).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransOpaqueTunnelEncapRule,
                    BgpParseExtComSubTypeTransOpaqueRuleBase,
                    extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity,
                    extCommTunnelEncapFactory);

// Adds this leaf to each transitive opaque type rule. The leaf builds ExtCommTunnelEncap objects.
// Without the plugin, values of its subtype become unclassified ExtCommSubtyped objects. Each
// operation of the plugin traces its name at level 8 of the handle "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommTunnelEncapSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommTunnelEncapSm)

  // Adds a new BgpParseExtComSubTypeTransOpaqueTunnelEncapRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule)
};

// Returns a new tunnel encapsulation plugin with notification on that has served all announced
// nodes of `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommTunnelEncapSm, BgpParseExtCommTunnelEncapSmIs,
                           bgpParseExtCommTunnelEncapSmFactory);

}  // namespace Routing::Bgp

#endif
