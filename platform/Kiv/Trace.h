// Trace output: messages of a library about its work, switched on at run time.
//
//   constinit Kiv::TraceHandle bgpParseTrace("BgpParse");
//   KIV_TRACE(bgpParseTrace, 8, "plugin " << plugin << " added");
//
// Each handle has ten levels, 0 to 9, which are switched independently. All are off at first. A
// text such as
//
//   BgpParse/8,OvBgp/0-3+9
//
// says which levels are on. It is a list, separated by commas, of entries HANDLE/LEVELS. LEVELS are
// numbers and ranges joined by "+", or "*" for all levels. The handle "*" stands for every handle.
// Several entries for one handle add up. The environment variable KIV_TRACE gives the first text,
// and traceLevelsIs() replaces it. A malformed KIV_TRACE is reported on standard error and ignored.
//
// Everything here is thread-safe and may be called before main(). A level that is off costs one
// load and one branch.
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

// The switch of one subject of trace output. Define it at namespace scope with constinit. Then no
// constructor has to run, and constructors of other static objects may use the handle: it enters
// the register at the first call of enabled(). Several handles may have the same name, for example
// in different libraries; they are switched together.
class OV_EXPORT TraceHandle {
 public:
  // The highest level; the lowest is 0.
  static constexpr unsigned levelMax = 9;

  // A handle with all levels off. `name` is not copied and must live as long as the handle.
  constexpr explicit TraceHandle(const char* name) : name_(name) {}
  // Leaves the register. All levels are off afterwards, since late destructors may still trace.
  ~TraceHandle();
  // Not copyable: the register holds the address of the handle.
  TraceHandle(const TraceHandle&) = delete;
  // Not assignable, as it is not copyable.
  TraceHandle& operator=(const TraceHandle&) = delete;

  // The name that entries of the level text refer to.
  const char* name() const { return name_; }

  // Whether `level` is on. Always false for a level above levelMax. The first call of a handle
  // takes a lock; the first call of the process also reads the environment and may throw
  // std::bad_alloc.
  bool enabled(unsigned level) const {
    // Relaxed: a switch orders nothing but itself, and a change may take effect a little later.
    const U32 levels = levels_.load(std::memory_order_relaxed);
    if (levels == notRegistered) [[unlikely]]
      return enabledOnceRegistered(level);
    return (levels & bitOf(level)) != 0;
  }

 private:
  friend class TraceRegister;

  // The value of levels_ before registration; distinct from every set of levels.
  static constexpr U32 notRegistered = U32{1} << 31;
  static constexpr U32 bitOf(unsigned level) { return level <= levelMax ? U32{1} << level : 0; }

  bool enabledOnceRegistered(unsigned level) const;

  const char* const name_;
  mutable std::atomic<U32> levels_{notRegistered};  // bit n: level n is on
  mutable const TraceHandle* next_ = nullptr;       // in the register; guarded by its mutex
};

// Switches on the levels of `text`, whose form is described above, and switches off all others.
// This holds for present and future handles. An empty text switches everything off. Throws
// Kiv::RangeException, and changes nothing, if `text` is malformed.
OV_EXPORT void traceLevelsIs(std::string_view text);

// A function that receives trace output, one line without line end for each call. The calls never
// overlap, because a mutex is held during each. A message that the sink itself traces is dropped. A
// sink should not throw: any exception but std::bad_alloc reaches the code that traces.
using TraceSink = std::function<void(std::string_view line)>;

// Replaces the sink; an empty function means standard error, which is the default. On return the
// former sink is not running and will not be called again, so its captures may be destroyed. Must
// not be called by a sink, since the mutex is not recursive.
OV_EXPORT void traceSinkIs(TraceSink sink);

// Sends one line to the sink: "HANDLE/LEVEL FILE:LINE MESSAGE", with the file name only. Line ends
// in the message are replaced by a backslash and "n". Does not test whether the level is on. Throws
// std::bad_alloc. Use KIV_TRACE instead.
OV_EXPORT void traceMessage(const TraceHandle& handle, unsigned level, std::string_view file,
                            int line, std::string_view message);

}  // namespace Kiv

// Traces the text that `expression` streams, as in `"plugin " << plugin`, if `level` of `handle` is
// on. Otherwise `expression` is not evaluated. If memory is short, the message is dropped, so that
// code that must not throw can trace, too.
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
