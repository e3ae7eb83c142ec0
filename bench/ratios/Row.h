// One line of the table: some work, and who does it.
#ifndef BENCH_RATIOS_ROW_H
#define BENCH_RATIOS_ROW_H

#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kiv/Types.h"

namespace Bench {

// One contender at its work, in a process of its own, with all that it holds.
class Trial {
 public:
  Trial() = default;
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;
  virtual ~Trial() = default;
  // Does a fixed amount of work; returns its time, in the row's unit.
  virtual double sample() = 0;
  // What one held object takes, in bytes, and how many different ones are held; 0
  // where that is no question. Asked for once, after all samples. Contenders that
  // did the same work must hold the same number: else one of them is wrong.
  virtual double bytes() { return 0; }
  virtual double objects() { return 0; }
};

struct Contender {
  std::string name;
  std::function<std::unique_ptr<Trial>()> start;
};

enum class Measure { time, bytes };

// Ours is to be at most so much of the best of those named; of one unit, if none.
struct Goal {
  Measure measure = Measure::time;
  double atMost = 1;
  std::vector<std::string> against;
};

struct Row {
  std::string name;
  // Ours first. Makes what they work on, which they hold.
  std::function<std::vector<Contender>()> contenders;
  std::vector<Goal> goals;
  std::string unit = "ns";
  U32 rounds = 15;
  // Rows of one series differ by `x` alone, and make a curve.
  std::string series = {};
  double x = 0;
};

// How much to do.
struct Scale {
  bool quick = false;
  // A tenth of it, for a run of seconds.
  U32 of(U32 whole) const { return quick ? whole / 10 : whole; }
  U32 rounds(U32 whole) const { return quick ? 3 : whole; }
};

// What the calling thread computes for, so that other processes do not count.
template <class Work>
double nanoseconds(const Work& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
  };
  const double start = now();
  work();
  return now() - start;
}

// What a clock on the wall says.
template <class Work>
double wallNanoseconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// A trial that calls `work` `times` times a sample.
template <class Work>
class Repeat final : public Trial {
 public:
  Repeat(U32 times, Work work) : times_(times), work_(std::move(work)) {}
  double sample() override {
    return nanoseconds([this] {
             for (U32 i = 0; i < times_; ++i) work_();
           }) /
           times_;
  }

 private:
  const U32 times_;
  Work work_;
};

// `Made` made from `args` once the contender has its process.
template <class Made, class... Args>
std::function<std::unique_ptr<Trial>()> trial(Args... args) {
  return [args...] { return std::make_unique<Made>(args...); };
}

}  // namespace Bench

#endif
