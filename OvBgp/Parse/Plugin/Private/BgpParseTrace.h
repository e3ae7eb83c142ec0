// Trace output of the parser. Private to the library.
//
// The trace handle "BgpParse" is switched with Kiv::traceLevelsIs("BgpParse/8") or with the
// environment variable KIV_TRACE. While it is off, a trace point costs one relaxed load.
#ifndef OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSETRACE_H
#define OVBGP_PARSE_PLUGIN_PRIVATE_BGPPARSETRACE_H

#include "Kiv/Trace.h"

namespace Routing::Bgp {

// The trace handle "BgpParse", shared by all plugins.
extern Kiv::TraceHandle bgpParseTrace;

// The level of bgpParseTrace for operations of plugins.
inline constexpr unsigned bgpParseTracePlugin = 8;

}  // namespace Routing::Bgp

// Traces the name of the calling function and the plugin's address. Use it at the beginning of a
// plugin's operation.
#define BGP_PARSE_TRACE_OPERATION() \
  KIV_TRACE(bgpParseTrace, bgpParseTracePlugin, __func__ << " plugin " << this)

#endif
