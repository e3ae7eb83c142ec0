// A row of the table: some work, the contenders that do it, and the goals for ours.
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

// The work of one contender, with all objects that it holds. It runs in a process of its own.
class Trial {
 public:
  Trial() = default;
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;
  virtual ~Trial() = default;
  // Does a fixed amount of work and returns its time per operation, in the unit of the row.
  virtual double sample() = 0;
  // The memory of one held object in bytes, and the number of different objects held; 0 if the
  // row does not measure this. Both are called once, after all samples. Contenders of a row do
  // the same work, so they must hold the same number of objects.
  virtual double bytes() { return 0; }
  virtual double objects() { return 0; }
};

struct Contender {
  std::string name;
  std::function<std::unique_ptr<Trial>()> start;
};

enum class Measure { time, bytes };

// An upper bound for ours: `atMost` times the best peer of `against`. If `against` is empty,
// `atMost` is in the unit of the measure (ns, ms or bytes).
struct Goal {
  Measure measure = Measure::time;
  double atMost = 1;
  std::vector<std::string> against;
};

struct Row {
  std::string name;
  // Creates the contenders, ours first, together with their data. Called when the row runs, so
  // only one row's data is in memory at a time.
  std::function<std::vector<Contender>()> contenders;
  std::vector<Goal> goals;
  std::string unit = "ns";
  U32 rounds = 15;
  // Rows of one series differ only in `x` and are drawn as a curve.
  std::string series = {};
  double x = 0;
};

// Scales the amount of work.
struct Scale {
  bool quick = false;
  // A tenth of the work for a quick run, which takes seconds and gives no valid figures.
  U32 of(U32 whole) const { return quick ? whole / 10 : whole; }
  U32 rounds(U32 whole) const { return quick ? 3 : whole; }
};

// The processor time of the calling thread for `work`. Time of other processes does not count.
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

// The wall time for `work`, for work that runs on several threads or in other processes.
template <class Work>
double wallNanoseconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// A trial that calls `work` `times` times per sample.
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

// Returns a function that creates the trial `Made` from `args`. The worker calls it in the
// contender's own process, so the trial's memory belongs to that process alone.
template <class Made, class... Args>
std::function<std::unique_ptr<Trial>()> trial(Args... args) {
  return [args...] { return std::make_unique<Made>(args...); };
}

}  // namespace Bench

#endif
