// Shows that the stress tests can fail. Each test runs the same schedules twice: with a naive
// variant of one step of the protocol, which must break, and with the library, which must not.
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

// The number of different values. It is small, so that threads use the same value at the same
// time.
inline constexpr U32 fewNumbers = 3;

// A table of objects of class `SomeNumber`. Threads intern and look up numbers through it. When
// all threads have ended, isRight() says whether the table and the memory are empty.
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

// Threads that intern, look up and release a few numbers of a `World`.
template <class World>
class Schedule {
 public:
  // Returns whether every step was right and nothing was left after each round. There are many
  // short rounds, because a member that a release left behind is noticed only at the end of a
  // round: within it, a lookup may find the member and release it properly.
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

// A schedule; returns whether all was right.
using Run = bool (*)(unsigned seed);

// Runs the schedule in a new process, because a broken protocol may crash or hang it. Returns
// whether it ended in time and all was right.
inline bool goesWell(Run run, unsigned seed) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(STDERR_FILENO);  // hides the messages about an expected crash
    ::alarm(30);
    const Threaded threaded;
    ::_exit(run(seed) ? 0 : 1);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The naive variant must break within a minute; usually the first schedule breaks it. The library
// must survive all schedules up to that one, and then as many more as there is time for.
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
