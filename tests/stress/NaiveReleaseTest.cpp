// That stress can fail: the same schedule, over handles that decide in the obvious way
// whether they are still needed, and over the library's.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <iostream>

#include "Dorn/DedupHashTable.h"
#include "Kiv/Hash.h"
#include "tests/platform/Dorn/TestHandle.h"
#include "tests/stress/Stress.h"

namespace Stress {
namespace {

using Clock = std::chrono::steady_clock;
using DornTest::NumberContent;

// A number that knows whether it is alive.
class CarefulNumber : public Dorn::DedupHandle {
  KIV_OBJECT(CarefulNumber)

 public:
  static inline std::atomic<int> alive{0};
  static U32 hashOf(U32 number) { return Kiv::hashSingleAttr(0, number); }

  explicit CarefulNumber(U32 number) : number_(number) { ++alive; }
  ~CarefulNumber() override {
    --alive;
    number_ = ~U32{0};
  }

  U32 number() const { return number_; }
  U32 hash() const override { return hashOf(number_); }
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override {
    return static_cast<const CarefulNumber*>(other)->number_ == number_;
  }
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return static_cast<const NumberContent&>(key).number == number_;
  }

 private:
  U32 number_;
};
KIV_OBJECT_DEFINE(CarefulNumber)

// Gives up its reference first, and goes to the table when it finds that only the
// table's is left: by then another thread may have found it there, released it and
// destroyed it.
class NaiveNumber final : public CarefulNumber {
  KIV_OBJECT(NaiveNumber)

 public:
  using ReferenceRules = NaiveNumber;
  using CarefulNumber::CarefulNumber;

  U32 referencesDec() const noexcept {
    const U32 left = referenceSubtract() & countMask;
    if (left == 0) {
      const_cast<NaiveNumber*>(this)->zeroReferencesIs();
      return 0;
    }
    if (left != 1 || !isDeduped()) return left;
    dawdle();
    referenceAdd();  // for the table to give up
    return CarefulNumber::referencesDec();
  }
};
KIV_OBJECT_DEFINE(NaiveNumber)

template <class Number>
class Schedule {
 public:
  // Whether everything was right, and nothing is left whenever the threads have ended:
  // what a release forgets shows only if nobody finds it again.
  static bool run(unsigned seed) {
    Schedule schedule;
    for (unsigned round = 0; round < 40; ++round) {
      inThreads(4, [&](unsigned thread) { schedule.work((seed * 40 + round) * 4 + thread); });
      if (schedule.table_->size() != 0 || schedule.wrong_) return false;
    }
    return CarefulNumber::alive == 0;
  }

 private:
  void work(unsigned seed) {
    std::minstd_rand random(seed + 1);
    std::array<Kiv::Ptr<Number>, 2> held;
    for (int step = 0; step < 80; ++step) {
      const U32 value = static_cast<U32>(random() >> 4) % 3;
      auto got = random() % 2 == 0 ? intern(value) : find(value);
      if (got && (got->number() != value || !got->isDeduped())) wrong_ = true;
      held[random() % held.size()] = std::move(got);
    }
  }
  Kiv::Ptr<Number> intern(U32 value) {
    return cast(table_->dedup(Dorn::DedupHandle::Ptr(new Number(value))));
  }
  Kiv::Ptr<Number> find(U32 value) {
    return cast(table_->lookupByContent(NumberContent(value), Number::hashOf(value)));
  }
  static Kiv::Ptr<Number> cast(Dorn::DedupHandle::Ptr handle) {
    return Kiv::staticPtrCast<Number>(std::move(handle));
  }

  const Dorn::DedupHashTable::Ptr table_ =
      Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(true);
  std::atomic<bool> wrong_{false};
};

// Whether the schedule goes well in a process of its own, which may crash or hang.
template <class Number>
bool goesWell(unsigned seed) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(STDERR_FILENO);  // what sanitizers and the C library say of a crash
    ::alarm(30);
    const Threaded threaded;
    ::_exit(Schedule<Number>::run(seed) ? 0 : 1);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The naive decision breaks within a few schedules, usually in the first; ours survives
// all of them, and as many more as there is time for.
TEST(NaiveRelease, BreaksWhereOursHolds) {
  const auto until = Clock::now() + time();
  unsigned seed = 0;
  const auto naiveUntil = Clock::now() + std::chrono::seconds(60);
  while (goesWell<NaiveNumber>(seed) && Clock::now() < naiveUntil) ++seed;
  EXPECT_LT(Clock::now(), naiveUntil) << "no schedule has broken the naive decision";
  unsigned held = 0;
  for (; held <= seed || Clock::now() < until; ++held) {
    ASSERT_TRUE(goesWell<CarefulNumber>(held)) << "schedule " << held;
  }
  std::cout << "naive broke in schedule " << seed << ", ours held in " << held << "\n";
}

}  // namespace
}  // namespace Stress
