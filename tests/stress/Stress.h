// Helpers for stress tests: duration, threads, and random delays at the places where threads can
// race. Each test runs for OVBGP_STRESS_SECONDS seconds, by default two.
#ifndef TESTS_STRESS_STRESS_H
#define TESTS_STRESS_STRESS_H

#include <sched.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

#include "Dorn/DelayPoint.h"
#include "Kiv/PtrInterface.h"
#include "OvBgpGlobals/OvBgpGlobals.h"

namespace Stress {

// The duration of each stress test.
inline std::chrono::milliseconds time() {
  const char* const seconds = std::getenv("OVBGP_STRESS_SECONDS");
  return std::chrono::milliseconds(seconds ? std::atoi(seconds) * 1000 : 2000);
}

// Delays the calling thread at random: usually not at all, sometimes by a yield, and now and
// then long enough for another thread to pass through the same code.
inline void dawdle() {
  thread_local std::minstd_rand random(
      static_cast<unsigned>(std::hash<std::thread::id>()(std::this_thread::get_id())));
  const unsigned choice = static_cast<unsigned>(random() >> 8) % 64;
  if (choice == 0) {
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  } else if (choice < 8) {
    ::sched_yield();
  }
}

// While an object of this class exists, pointers count atomically and new tables take locks. In
// builds with delay points, threads dawdle there.
class Threaded {
 public:
  Threaded() { set(true); }
  Threaded(const Threaded&) = delete;
  Threaded& operator=(const Threaded&) = delete;
  ~Threaded() { set(false); }

 private:
  static void set(bool on) {
    Kiv::VFPtrInterface::threadSafePointers = on;
    OvBgpGlobals::multiThreadedIs(on);
#ifdef OVBGP_DELAYS
    Dorn::delayHook = on ? [](Dorn::DelayPoint) { dawdle(); } : Dorn::DelayHook(nullptr);
#endif
  }
};

// Runs `work(0)` to `work(count - 1)`, each in a thread of its own, and waits for all.
template <class Work>
void inThreads(unsigned count, const Work& work) {
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < count; ++i) threads.emplace_back([&work, i] { work(i); });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace Stress

#endif
