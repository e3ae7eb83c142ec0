#include "BgpCommon/Private/OvBgpTrace.h"

namespace Routing::Bgp {

constinit Kiv::TraceHandle ovBgpTrace("OvBgp");

}  // namespace Routing::Bgp
