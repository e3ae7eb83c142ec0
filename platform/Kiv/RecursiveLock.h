// A lock for what takes some microseconds at most, and may come back to itself.
#ifndef KIV_RECURSIVELOCK_H
#define KIV_RECURSIVELOCK_H

#include <atomic>
#include <mutex>

#include "Kiv/SpinLock.h"
#include "Kiv/Types.h"

namespace Kiv {

// Its holder may take it again. Who finds it taken looks for as long as it takes to fall
// asleep and to wake up, and only then sleeps; he writes to its cache line, which the
// holder has to write to, only when it seems to be free.
class RecursiveLock {
 public:
  RecursiveLock() = default;
  RecursiveLock(const RecursiveLock&) = delete;
  RecursiveLock& operator=(const RecursiveLock&) = delete;

  void lock() {
    if (!mutex_.try_lock()) [[unlikely]]
      wait();
    depthIs(depth() + 1);
  }
  void unlock() noexcept {
    depthIs(depth() - 1);
    mutex_.unlock();
  }

 private:
  [[gnu::noinline]] void wait() {
    for (U32 looks = 0; looks < looksBeforeSleep; ++looks) {
      spinPause();
      if (depth() == 0 && mutex_.try_lock()) return;
    }
    mutex_.lock();
  }
  // Of the holder; others only look.
  U32 depth() const noexcept { return depth_.load(std::memory_order_relaxed); }
  void depthIs(U32 depth) noexcept { depth_.store(depth, std::memory_order_relaxed); }

  static constexpr U32 looksBeforeSleep = 100;

  std::recursive_mutex mutex_;
  std::atomic<U32> depth_{0};
};

}  // namespace Kiv

#endif
