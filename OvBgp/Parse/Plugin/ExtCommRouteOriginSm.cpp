#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommRouteOriginSm, BgpParseExtCommRouteOriginSmIs,
                        bgpParseExtCommRouteOriginSmFactory)

// Type 0x00, subtype 0x03.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteOriginSm, BgpParseKindTransTwoOctetAs,
                             instantiateExtCommSubTypeTransTwoOctetAsSubRule,
                             addExtCommSubTypeTransTwoOctetAsSubRule,
                             BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule)
// Type 0x01, subtype 0x03.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteOriginSm, BgpParseKindTransIpv4Address,
                             instantiateExtCommSubTypeTransIpv4AddressSubRule,
                             addExtCommSubTypeTransIpv4AddressSubRule,
                             BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule)
// Type 0x02, subtype 0x03.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommRouteOriginSm, BgpParseKindTransFourOctetAs,
                             instantiateExtCommSubTypeTransFourOctetAsSubRule,
                             addExtCommSubTypeTransFourOctetAsSubRule,
                             BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule)

}  // namespace Routing::Bgp
