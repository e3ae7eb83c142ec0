#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParsePluginDefine.h"

namespace Routing::Bgp {

BGP_PARSE_PLUGIN_DEFINE(BgpParseExtCommOriginValidationStateSm,
                        BgpParseExtCommOriginValidationStateSmIs,
                        bgpParseExtCommOriginValidationStateSmFactory)

// Type 0x43, subtype 0x00.
BGP_PARSE_PLUGIN_LEAF_DEFINE(BgpParseExtCommOriginValidationStateSm, BgpParseKindNonTransOpaque,
                             instantiateExtCommSubTypeNonTransOpaqueSubRule,
                             addExtCommSubTypeNonTransOpaqueSubRule,
                             BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule)

}  // namespace Routing::Bgp
