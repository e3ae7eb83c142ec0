#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

constinit Kiv::TraceHandle bgpParseTrace("BgpParse");

}  // namespace Routing::Bgp
