// BgpParseExtCommDefaultGatewaySm: the plugin that adds the leaves for default gateways to the rule
// tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMDEFAULTGATEWAYSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMDEFAULTGATEWAYSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"

namespace Routing::Bgp {

// The leaf for type 0x03, subtype 0x0d: a default gateway (RFC 7432 section 7.8).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule,
                    BgpParseExtComSubTypeTransOpaqueRuleBase,
                    extCommPktSubtypeTransOpaqueDefaultGateway, extCommDefaultGatewayFactory);

// Adds this leaf to each transitive opaque type rule. The leaf builds ExtCommDefaultGateway
// objects. Without the plugin, values of its subtype become unclassified ExtCommSubtyped objects.
// Each operation of the plugin traces its name at level 8 of the handle "BgpParse". Owner thread
// only.
class OV_EXPORT BgpParseExtCommDefaultGatewaySm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommDefaultGatewaySm)

  // Adds a new BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule)
};

// Returns a new default gateway plugin with notification on that has served all announced nodes of
// `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommDefaultGatewaySm, BgpParseExtCommDefaultGatewaySmIs,
                           bgpParseExtCommDefaultGatewaySmFactory);

}  // namespace Routing::Bgp

#endif
