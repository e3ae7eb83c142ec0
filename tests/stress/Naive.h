// That stress can fail: schedules run over something that decides in the obvious way,
// which they break, and over the library, which has to hold.
#ifndef TESTS_STRESS_NAIVE_H
#define TESTS_STRESS_NAIVE_H

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <iostream>
#include <random>

#include "Dorn/DedupHashTable.h"
#include "tests/platform/Dorn/TestHandle.h"
#include "tests/stress/Stress.h"

namespace Stress {

// The values that all threads meet on.
inline constexpr U32 fewNumbers = 3;

// A table of numbers of that class. What a world interns and finds is what its threads
// hold; isRight() is asked when they have ended.
template <class SomeNumber>
class NumberWorld {
 public:
  using Number = SomeNumber;

  Kiv::Ptr<Number> intern(U32 value) { return cast(table_->dedup(Number::make(value))); }
  Kiv::Ptr<Number> find(U32 value) {
    return cast(
        table_->lookupByContent(DornTest::NumberContent(value), DornTest::Number::hashOf(value)));
  }
  bool isRight() const { return table_->size() == 0 && DornTest::Number::alive == 0; }

 protected:
  const Dorn::DedupHashTable::Ptr& table() const { return table_; }

 private:
  static Kiv::Ptr<Number> cast(Dorn::DedupHandle::Ptr handle) {
    return Kiv::staticPtrCast<Number>(std::move(handle));
  }

  const Dorn::DedupHashTable::Ptr table_ = DornTest::newTable(true);
};

// Threads of `World` that intern, find and let go of a few numbers.
template <class World>
class Schedule {
 public:
  // Whether all was right, and nothing is left whenever the threads have ended: what a
  // release forgets shows only if nobody finds it again.
  static bool run(unsigned seed) {
    Schedule schedule;
    for (unsigned round = 0; round < 40; ++round) {
      inThreads(4, [&](unsigned thread) { schedule.work((seed * 40 + round) * 4 + thread); });
      if (schedule.wrong_ || !schedule.world_.isRight()) return false;
    }
    return true;
  }

 private:
  void work(unsigned seed) {
    std::minstd_rand random(seed + 1);
    std::array<Kiv::Ptr<typename World::Number>, 2> held;
    for (int step = 0; step < 80; ++step) {
      const U32 value = static_cast<U32>(random() >> 4) % fewNumbers;
      auto got = random() % 2 == 0 ? world_.intern(value) : world_.find(value);
      if (got && (got->number() != value || !got->isDeduped())) wrong_ = true;
      held[random() % held.size()] = std::move(got);
    }
  }

  World world_;
  std::atomic<bool> wrong_{false};
};

using Run = bool (*)(unsigned seed);

// Whether the schedule goes well in a process of its own, which may crash or hang.
inline bool goesWell(Run run, unsigned seed) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(STDERR_FILENO);  // what sanitizers and the C library say of a crash
    ::alarm(30);
    const Threaded threaded;
    ::_exit(run(seed) ? 0 : 1);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The naive way breaks within a few schedules, usually in the first; ours survives all
// of them, and as many more as there is time for.
inline void naiveBreaksAndOursHolds(Run naive, Run ours) {
  using Clock = std::chrono::steady_clock;
  const auto until = Clock::now() + time();
  unsigned seed = 0;
  const auto naiveUntil = Clock::now() + std::chrono::seconds(60);
  while (goesWell(naive, seed) && Clock::now() < naiveUntil) ++seed;
  EXPECT_LT(Clock::now(), naiveUntil) << "no schedule has broken the naive way";
  unsigned held = 0;
  for (; held <= seed || Clock::now() < until; ++held) {
    ASSERT_TRUE(goesWell(ours, held)) << "schedule " << held;
  }
  std::cout << "naive broke in schedule " << seed << ", ours held in " << held << "\n";
}

}  // namespace Stress

#endif
