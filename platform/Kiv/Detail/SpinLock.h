// A spin lock of one octet, for critical sections of a few dozen instructions.
#ifndef KIV_DETAIL_SPINLOCK_H
#define KIV_DETAIL_SPINLOCK_H

#include <sched.h>

#include <atomic>
#include <ctime>

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
// because the owner of the lock may have been preempted. After some yields it sleeps between looks,
// for longer each time: a thread of real-time priority that only yielded would never let an owner
// of lower priority run on the same processor.
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
      while (taken_.load(std::memory_order_relaxed)) pause(++looks);
    } while (taken_.exchange(true, std::memory_order_acquire));
  }

  // Waits between look number `look` and the next one.
  static void pause(U32 look) noexcept {
    if (look <= looksBeforeYield) {
      spinPause();
    } else if (look <= looksBeforeSleep) {
      sched_yield();
    } else {
      const timespec moment{0, napOf(look - looksBeforeSleep)};
      nanosleep(&moment, nullptr);
    }
  }
  // The nanoseconds of a nap: 50 us at first, then a half more each time, and 1 ms at most.
  static constexpr long napOf(U32 nap) noexcept {
    long length = 50'000;
    for (; nap > 1 && length < 1'000'000; --nap) length += length / 2;
    return length < 1'000'000 ? length : 1'000'000;
  }

  // Longer than a critical section takes on a running owner, so beyond that the owner was probably
  // preempted.
  static constexpr U32 looksBeforeYield = 64;
  // So many yields give every thread of the same priority a turn.
  static constexpr U32 looksBeforeSleep = looksBeforeYield + 32;

  std::atomic<bool> taken_{false};
};

}  // namespace Kiv

#endif
