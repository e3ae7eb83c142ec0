#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommRouteTargetSm, BgpParseExtCommRouteTargetSmIs,
                        bgpParseExtCommRouteTargetSmFactory)

// Type 0x00, subtype 0x02.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteTargetSm, BgpParseKindTransTwoOctetAs,
                             instantiateExtCommSubTypeTransTwoOctetAsSubRule,
                             addExtCommSubTypeTransTwoOctetAsSubRule,
                             BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule)
// Type 0x01, subtype 0x02.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteTargetSm, BgpParseKindTransIpv4Address,
                             instantiateExtCommSubTypeTransIpv4AddressSubRule,
                             addExtCommSubTypeTransIpv4AddressSubRule,
                             BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule)
// Type 0x02, subtype 0x02.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteTargetSm, BgpParseKindTransFourOctetAs,
                             instantiateExtCommSubTypeTransFourOctetAsSubRule,
                             addExtCommSubTypeTransFourOctetAsSubRule,
                             BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule)

}  // namespace Routing::Bgp
