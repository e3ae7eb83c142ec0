// RelaxedFlag: a process-wide switch that one thread sets and any thread reads.
#ifndef KIV_RELAXEDFLAG_H
#define KIV_RELAXEDFLAG_H

#include <atomic>

namespace Kiv {

// A bool that is read and written by relaxed atomic operations, so that a read costs what a plain
// bool costs. It orders nothing: the thread that sets it makes sure by other means that threads
// which must see the new value are started, or synchronise with it, after that.
class RelaxedFlag {
 public:
  // A switch that is off or on; usable in constant initialisation.
  constexpr explicit RelaxedFlag(bool on) noexcept : on_(on) {}
  // Not copyable: readers refer to the one object.
  RelaxedFlag(const RelaxedFlag&) = delete;
  // Not assignable from another switch; assign a bool.
  RelaxedFlag& operator=(const RelaxedFlag&) = delete;

  // Switches it on or off. Returns the new value.
  bool operator=(bool on) noexcept {  // NOLINT(misc-unconventional-assign-operator): like atomics
    on_.store(on, std::memory_order_relaxed);
    return on;
  }
  // Whether it is on. Implicit, so that it reads like the bool that it stands for.
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator bool() const noexcept { return on_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> on_;
};

}  // namespace Kiv

#endif
