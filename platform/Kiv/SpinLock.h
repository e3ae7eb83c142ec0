// A spin lock of one octet, for critical sections of a few dozen instructions.
#ifndef KIV_SPINLOCK_H
#define KIV_SPINLOCK_H

#include <sched.h>

#include <atomic>

#include "Kiv/ThreadAnnotations.h"
#include "Kiv/Types.h"

namespace Kiv {

// Tells the processor that the caller is in a spin loop, so that it saves power and leaves
// execution units to the other hardware thread of the core. Does nothing on other architectures.
inline void spinPause() noexcept {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

// Locking takes one atomic exchange and unlocking one store, where a mutex needs two locked
// instructions. A waiting thread spins for a while and then yields its processor between looks,
// because the owner of the lock may have been preempted.
//
// Not recursive and not fair. Do not allocate, call user code or wait for anything while you hold
// it. The member functions have the names of the standard's Lockable, for std::lock_guard.
class KIV_CAPABILITY("spin lock") SpinLock {
 public:
  // An unlocked lock; constant-initialised, so a static lock is usable before main().
  SpinLock() noexcept = default;
  // Not copyable: waiting threads refer to the address of the lock.
  SpinLock(const SpinLock&) = delete;
  // Not assignable, as it is not copyable.
  SpinLock& operator=(const SpinLock&) = delete;

  // Waits until the lock is free and takes it. The thread must not own the lock already: it would
  // wait forever. Acquire: the thread sees everything that former owners did.
  void lock() noexcept KIV_ACQUIRE() {
    if (taken_.exchange(true, std::memory_order_acquire)) [[unlikely]]
      wait();
  }
  // Releases the lock. Only the thread that locked it may do so.
  void unlock() noexcept KIV_RELEASE() { taken_.store(false, std::memory_order_release); }

 private:
  // Reads until the lock seems free and only then tries the exchange, because each exchange, also a
  // failing one, takes the cache line away from the owner.
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

  // Longer than a critical section takes on a running owner, so beyond that the owner was probably
  // preempted.
  static constexpr U32 looksBeforeYield = 64;

  std::atomic<bool> taken_{false};
};

}  // namespace Kiv

#endif
