#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommDefaultGatewaySm, BgpParseExtCommDefaultGatewaySmIs,
                        bgpParseExtCommDefaultGatewaySmFactory)

// Type 0x03, subtype 0x0d.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommDefaultGatewaySm, BgpParseKindTransOpaque,
                             instantiateExtCommSubTypeTransOpaqueSubRule,
                             addExtCommSubTypeTransOpaqueSubRule,
                             BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule)

}  // namespace Routing::Bgp
