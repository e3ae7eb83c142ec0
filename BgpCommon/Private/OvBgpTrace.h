// The library's trace output, the parser's aside.  Private to the library.
#ifndef BGPCOMMON_PRIVATE_OVBGPTRACE_H
#define BGPCOMMON_PRIVATE_OVBGPTRACE_H

#include "Kiv/Trace.h"

namespace Routing::Bgp {

extern Kiv::TraceHandle ovBgpTrace;

// Of ovBgpTrace: objects are rebuilt from a store.
inline constexpr unsigned ovBgpTraceDestash = 8;
// Of ovBgpTrace: notifiers of route-target sub-lists come and go.
inline constexpr unsigned ovBgpTraceLifeTime = 9;

}  // namespace Routing::Bgp

#endif
