#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommTunnelEncapSm, BgpParseExtCommTunnelEncapSmIs,
                        bgpParseExtCommTunnelEncapSmFactory)

// Type 0x03, subtype 0x0c.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommTunnelEncapSm, BgpParseKindTransOpaque,
                             instantiateExtCommSubTypeTransOpaqueSubRule,
                             addExtCommSubTypeTransOpaqueSubRule,
                             BgpParseExtComSubTypeTransOpaqueTunnelEncapRule)

}  // namespace Routing::Bgp
