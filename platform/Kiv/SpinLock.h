// A lock of one octet for sections of some dozen instructions.
#ifndef KIV_SPINLOCK_H
#define KIV_SPINLOCK_H

#include <sched.h>

#include <atomic>

#include "Kiv/Types.h"

namespace Kiv {

// For loops that look whether another thread is done.
inline void spinPause() noexcept {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

// Taking it is one exchange and giving it back one store, where a mutex needs two
// locked operations.  Who finds it taken looks again for a while, and then lets
// other threads run between looks, as the holder may have lost its processor.
class SpinLock {
 public:
  SpinLock() noexcept = default;
  SpinLock(const SpinLock&) = delete;
  SpinLock& operator=(const SpinLock&) = delete;

  void lock() noexcept {
    if (taken_.exchange(true, std::memory_order_acquire)) [[unlikely]]
      wait();
  }
  void unlock() noexcept { taken_.store(false, std::memory_order_release); }

 private:
  [[gnu::noinline]] void wait() noexcept {
    U32 looks = 0;
    do {
      while (taken_.load(std::memory_order_relaxed)) {
        if (++looks > looksBeforeYield)
          sched_yield();
        else
          spinPause();
      }
    } while (taken_.exchange(true, std::memory_order_acquire));
  }

  static constexpr U32 looksBeforeYield = 64;

  std::atomic<bool> taken_{false};
};

}  // namespace Kiv

#endif
