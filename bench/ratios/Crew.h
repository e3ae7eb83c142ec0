// A fixed group of threads that repeat the same task together and measure its wall time.
#ifndef BENCH_RATIOS_CREW_H
#define BENCH_RATIOS_CREW_H

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include "Kiv/Types.h"

namespace Bench {

class Crew {
 public:
  // Each thread calls `task` with its number, from 0 on. The threads live as long as the crew,
  // like those of a daemon, so they keep their per-thread caches of the allocator.
  Crew(U32 threads, std::function<void(U32)> task)
      : task_(std::move(task)), begin_(threads + 1), end_(threads + 1), shifts_(threads) {
    for (U32 i = 0; i < threads; ++i) threads_.emplace_back([this, i] { serve(i); });
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;
  ~Crew() {
    leaving_ = true;
    begin_.arrive_and_wait();
    for (std::thread& thread : threads_) thread.join();
  }

  // Runs the task once on all threads. Returns the wall time in nanoseconds, from the start of
  // the first thread to the end of the last one. If a thread lost its processor during the run,
  // the time would measure the scheduler, so the run is repeated, up to ten times.
  double work() {
    workOnce();
    for (U32 tries = 0; tries < 10 && wasDisturbed(); ++tries) workOnce();
    const Clock::time_point start = std::ranges::min(shifts_, {}, &Shift::start).start;
    const Clock::time_point end = std::ranges::max(shifts_, {}, &Shift::end).end;
    return std::chrono::duration<double, std::nano>(end - start).count();
  }

 private:
  using Clock = std::chrono::steady_clock;

  // One cache line per thread, against false sharing of the time stamps.
  struct alignas(64) Shift {
    Clock::time_point start;
    Clock::time_point end;
    bool disturbed = false;
  };

  void workOnce() {
    running_ = 0;
    begin_.arrive_and_wait();
    end_.arrive_and_wait();
  }

  bool wasDisturbed() const {
    return std::ranges::any_of(shifts_, [](const Shift& shift) { return shift.disturbed; });
  }

  void serve(U32 number) {
    for (begin_.arrive_and_wait(); !leaving_; begin_.arrive_and_wait()) {
      // Wait actively until every thread is running: a barrier wakes its threads one by one.
      ++running_;
      while (running_ < threads()) std::this_thread::yield();
      shifts_[number] = shift(number);
      end_.arrive_and_wait();
    }
  }

  Shift shift(U32 number) {
    const long before = lostProcessor();
    Shift shift;
    shift.start = Clock::now();
    task_(number);
    shift.end = Clock::now();
    shift.disturbed = lostProcessor() != before;
    return shift;
  }

  // The number of involuntary context switches of the calling thread.
  static long lostProcessor() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nivcsw;
  }

  U32 threads() const { return static_cast<U32>(shifts_.size()); }

  const std::function<void(U32)> task_;
  bool leaving_ = false;  // written and read on different sides of begin_, so no data race
  std::barrier<> begin_;
  std::barrier<> end_;
  std::atomic<U32> running_{0};
  std::vector<Shift> shifts_;
  std::vector<std::thread> threads_;
};

}  // namespace Bench

#endif
