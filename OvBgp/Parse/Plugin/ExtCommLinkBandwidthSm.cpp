#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommLinkBandwidthSm, BgpParseExtCommLinkBandwidthSmIs,
                        bgpParseExtCommLinkBandwidthSmFactory)

// Type 0x40, subtype 0x04.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommLinkBandwidthSm, BgpParseKindNonTransTwoOctetAs,
                             instantiateExtCommSubTypeNonTransTwoOctetAsSubRule,
                             addExtCommSubTypeNonTransTwoOctetAsSubRule,
                             BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule)

}  // namespace Routing::Bgp
