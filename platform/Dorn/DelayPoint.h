// The places where threads that share interned objects meet, for tests that hold one
// of them up there.
//
// Built with OVBGP_DELAYS, the library calls a hook at each of them; without, which is
// how it is shipped, nothing is left of these calls.
#ifndef DORN_DELAYPOINT_H
#define DORN_DELAYPOINT_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"

#ifdef OVBGP_DELAYS
#include <atomic>
#endif

namespace Dorn {

enum class DelayPoint : U8 {
  decrement,     // a count was read that may be given up
  lock,          // a shard's lock is about to be taken
  unlink,        // a member was found unused, and is still in its table
  notification,  // the table has changed, and its observer is about to hear of it
};

#ifdef OVBGP_DELAYS
using DelayHook = void (*)(DelayPoint);
extern OV_EXPORT std::atomic<DelayHook> delayHook;

inline void delayAt(DelayPoint point) noexcept {
  if (const DelayHook hook = delayHook.load(std::memory_order_relaxed)) hook(point);
}
#else
constexpr void delayAt(DelayPoint) noexcept {}
#endif

}  // namespace Dorn

#endif
