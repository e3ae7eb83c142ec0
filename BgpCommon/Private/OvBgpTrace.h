// The trace output of the library, except that of the rule tree. Private to the library.
#ifndef BGPCOMMON_PRIVATE_OVBGPTRACE_H
#define BGPCOMMON_PRIVATE_OVBGPTRACE_H

#include "Kiv/Trace.h"

namespace Routing::Bgp {

// Named "OvBgp" for users, who switch its levels on by that name (Kiv/Trace.h).
extern Kiv::TraceHandle ovBgpTrace;

// The level of ovBgpTrace that reports objects rebuilt from a store.
inline constexpr unsigned ovBgpTraceDestash = 8;
// The level of ovBgpTrace that reports when a notifier of a route-target sub-list is made or
// withdrawn.
inline constexpr unsigned ovBgpTraceLifeTime = 9;

}  // namespace Routing::Bgp

#endif
