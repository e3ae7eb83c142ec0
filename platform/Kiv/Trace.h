// Trace output: what a library says about its work when someone asks.
//
//   constinit Kiv::TraceHandle bgpParseTrace("BgpParse");
//   KIV_TRACE(bgpParseTrace, 8, "plugin " << plugin << " added");
//
// Each handle has ten levels, 0 to 9, which are switched on and off one by one,
// all off at first.  Which are on is said by a text such as
//
//   BgpParse/8,OvBgp/0-3+9
//
// a list, by commas, of handle and levels; levels are numbers and ranges joined by
// "+", or "*" for all; a handle of "*" means every handle.  Several entries for one
// handle add up.  The environment variable KIV_TRACE gives the first such text;
// traceLevelsIs replaces it.
//
// Everything here is for any thread at any time, the start of the process before
// main included.
#ifndef KIV_TRACE_H
#define KIV_TRACE_H

#include <atomic>
#include <functional>
#include <new>
#include <sstream>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Kiv {

// The switch of one subject of trace output.  Define it at namespace scope with
// constinit: it enters the register when first asked, so it needs no constructor
// to run, and may be used by any constructor of a static.  Handles of one name
// are switched together.
class OV_EXPORT TraceHandle {
 public:
  static constexpr unsigned levelMax = 9;

  // `name` must stay valid for as long as the handle.
  constexpr explicit TraceHandle(const char* name) : name_(name) {}
  ~TraceHandle();
  TraceHandle(const TraceHandle&) = delete;
  TraceHandle& operator=(const TraceHandle&) = delete;

  const char* name() const { return name_; }

  // Whether `level` is on; never for a level above 9.
  bool enabled(unsigned level) const {
    // Relaxed: a switch orders nothing but itself.
    const U32 levels = levels_.load(std::memory_order_relaxed);
    if (levels == notRegistered) [[unlikely]]
      return enabledOnceRegistered(level);
    return (levels & bitOf(level)) != 0;
  }

 private:
  friend class TraceRegister;

  static constexpr U32 notRegistered = U32{1} << 31;
  static constexpr U32 bitOf(unsigned level) { return level <= levelMax ? U32{1} << level : 0; }

  bool enabledOnceRegistered(unsigned level) const;

  const char* const name_;
  mutable std::atomic<U32> levels_{notRegistered};  // bit n: level n is on
  mutable const TraceHandle* next_ = nullptr;       // in the register, under its lock
};

// Switches on the levels that `text` (above) says, of all handles now and to come,
// and off all others.  Raises Kiv::RangeException and changes nothing if `text` is
// malformed.
OV_EXPORT void traceLevelsIs(std::string_view text);

// Takes trace output, a line at a time, without line end.  Calls do not overlap; a
// message traced from within one is dropped.
using TraceSink = std::function<void(std::string_view line)>;

// Replaces the sink; an empty one stands for standard error, the default.  When it
// returns, the sink before is not running and will not be called again.  Not to be
// called by a sink.
OV_EXPORT void traceSinkIs(TraceSink sink);

// Sends one line to the sink: handle, level, source position, message.  Line ends
// within the message are written as "\n".  Use KIV_TRACE.
OV_EXPORT void traceMessage(const TraceHandle& handle, unsigned level, std::string_view file,
                            int line, std::string_view message);

}  // namespace Kiv

// Traces what `expression` streams if `level` of `handle` is on, and otherwise
// evaluates nothing of it.  A message that there is no memory for is dropped, so that
// what must not throw can be traced, too.
#define KIV_TRACE(handle, level, expression)                                          \
  do {                                                                                \
    if ((handle).enabled(level)) [[unlikely]] {                                       \
      try {                                                                           \
        std::ostringstream kivTraceStream;                                            \
        kivTraceStream << expression;                                                 \
        ::Kiv::traceMessage(handle, level, __FILE__, __LINE__, kivTraceStream.str()); \
      } catch (const std::bad_alloc&) {                                               \
      }                                                                               \
    }                                                                                 \
  } while (false)

#endif
