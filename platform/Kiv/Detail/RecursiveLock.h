// A recursive lock, for critical sections of up to some microseconds that may lock it again.
#ifndef KIV_DETAIL_RECURSIVELOCK_H
#define KIV_DETAIL_RECURSIVELOCK_H

#include <atomic>
#include <mutex>

#include "Kiv/Detail/SpinLock.h"
#include "Kiv/ThreadAnnotations.h"
#include "Kiv/Types.h"

namespace Kiv {

// A recursive mutex with a spin phase. A waiting thread first spins for about as long as going to
// sleep and waking up would take, and only then sleeps. While it spins it only reads: a write would
// take the cache line away from the owner, who needs it to unlock.
//
// The owner may lock it again and must unlock it as often. The member functions have the names of
// the standard's Lockable, for std::lock_guard.
class KIV_CAPABILITY("recursive lock") RecursiveLock {
 public:
  // An unlocked lock.
  RecursiveLock() = default;
  // Not copyable: waiting threads refer to the address of the lock.
  RecursiveLock(const RecursiveLock&) = delete;
  // Not assignable, as it is not copyable.
  RecursiveLock& operator=(const RecursiveLock&) = delete;

  // Waits until no other thread owns the lock and takes it once more. Throws std::system_error only
  // if the mutex of the system fails.
  void lock() KIV_ACQUIRE() {
    if (!mutex_.try_lock()) [[unlikely]]
      wait();
    depthIs(depth() + 1);
  }
  // Undoes one lock() of this thread; the last one releases the lock.
  void unlock() noexcept KIV_RELEASE() {
    depthIs(depth() - 1);
    mutex_.unlock();
  }

 private:
  // The slow path of lock(): returns with the mutex locked.
  [[gnu::noinline]] void wait() {
    for (U32 looks = 0; looks < looksBeforeSleep; ++looks) {
      spinPause();
      if (depth() == 0 && mutex_.try_lock()) return;
    }
    mutex_.lock();
  }
  // How many times the owner has locked it; 0 if nobody owns it. Written by the owner only. For
  // other threads it is a hint whether a try is worthwhile, and orders nothing, hence relaxed.
  U32 depth() const noexcept { return depth_.load(std::memory_order_relaxed); }
  void depthIs(U32 depth) noexcept { depth_.store(depth, std::memory_order_relaxed); }

  // Some microseconds, about the cost of a futex wait and its wake-up.
  static constexpr U32 looksBeforeSleep = 100;

  std::recursive_mutex mutex_;
  std::atomic<U32> depth_{0};
};

}  // namespace Kiv

#endif
