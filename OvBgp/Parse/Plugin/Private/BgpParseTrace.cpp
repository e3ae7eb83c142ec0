#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

// constinit, because a constructor of another static object may already trace.
constinit Kiv::TraceHandle bgpParseTrace("BgpParse");

}  // namespace Routing::Bgp
