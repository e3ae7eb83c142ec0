// The parser's trace output.  Private to the library.
#ifndef OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSETRACE_H
#define OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSETRACE_H

#include "Kiv/Trace.h"

namespace Routing::Bgp {

extern Kiv::TraceHandle bgpParseTrace;

// Of bgpParseTrace: plugins at work.
inline constexpr unsigned bgpParseTracePlugin = 8;

}  // namespace Routing::Bgp

// In an operation of a plugin: says that it runs, and for which plugin.
#define BGP_PARSE_TRACE_OPERATION() \
  KIV_TRACE(bgpParseTrace, bgpParseTracePlugin, __func__ << " plugin " << this)

#endif
