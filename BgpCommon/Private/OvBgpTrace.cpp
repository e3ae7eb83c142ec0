#include "BgpCommon/Private/OvBgpTrace.h"

namespace Routing::Bgp {

// Constant-initialised, so that initialisers of other files can already trace.
constinit Kiv::TraceHandle ovBgpTrace("OvBgp");

}  // namespace Routing::Bgp
