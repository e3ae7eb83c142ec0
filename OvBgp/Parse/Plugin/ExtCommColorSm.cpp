#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommColorSm, BgpParseExtCommColorSmIs,
                        bgpParseExtCommColorSmFactory)

// Type 0x03, subtype 0x0b.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommColorSm, BgpParseKindTransOpaque,
                             instantiateExtCommSubTypeTransOpaqueSubRule,
                             addExtCommSubTypeTransOpaqueSubRule,
                             BgpParseExtComSubTypeTransOpaqueColorRule)

}  // namespace Routing::Bgp
