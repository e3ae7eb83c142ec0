// The points at which threads that share interned objects can meet, for tests.
//
// Built with OVBGP_DELAYS, the library calls a hook at each of these points. A test's hook holds
// up one thread there and lets another one run, so that a rare race happens each time. Without
// OVBGP_DELAYS, as the library is shipped, the calls are empty.
#ifndef DORN_DELAYPOINT_H
#define DORN_DELAYPOINT_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"

#ifdef OVBGP_DELAYS
#include <atomic>
#endif

namespace Dorn {

// Where a thread is when the hook is called.
enum class DelayPoint : U8 {
  decrement,     // a release has read the reference word, and has not changed it yet
  lock,          // before a shard's lock is taken
  unlink,        // under the shard's lock: a member without users is about to be removed
  notification,  // under the notification lock: after a change, before its notice
  unregister,    // an observer without references is about to be unregistered
};

#ifdef OVBGP_DELAYS
// A function of a test. Runs on the thread that has reached the point, perhaps under a lock.
using DelayHook = void (*)(DelayPoint);
// The hook of the process, or null. Any thread may set it.
extern OV_EXPORT std::atomic<DelayHook> delayHook;

// Calls the hook, if it is set.
inline void delayAt(DelayPoint point) noexcept {
  if (const DelayHook hook = delayHook.load(std::memory_order_relaxed)) hook(point);
}
#else
// Calls the hook in builds with OVBGP_DELAYS; nothing in this one.
constexpr void delayAt(DelayPoint) noexcept {}
#endif

}  // namespace Dorn

#endif
