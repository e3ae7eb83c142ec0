// BgpParseExtCommOriginValidationStateSm: the plugin that adds the leaves for origin validation
// states to the rule tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMORIGINVALIDATIONSTATESM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMORIGINVALIDATIONSTATESM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"

namespace Routing::Bgp {

// The leaf for type 0x43, subtype 0x00: an origin validation state (RFC 8097).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule,
                    BgpParseExtComSubTypeNonTransOpaqueRuleBase,
                    extCommPktSubtypeNonTransOriginValidationState,
                    extCommOriginValidationStateFactory);

// Adds this leaf to each non-transitive opaque type rule. The leaf builds
// ExtCommOriginValidationState objects. Without the plugin, values of its subtype become
// unclassified ExtCommSubtyped objects. Each operation of the plugin traces its name at level 8 of
// the handle "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommOriginValidationStateSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommOriginValidationStateSm)

  // Adds a new BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindNonTransOpaque,
                          instantiateExtCommSubTypeNonTransOpaqueSubRule)
};

// Returns a new origin validation state plugin with notification on that has served all announced
// nodes of `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommOriginValidationStateSm,
                           BgpParseExtCommOriginValidationStateSmIs,
                           bgpParseExtCommOriginValidationStateSmFactory);

}  // namespace Routing::Bgp

#endif
