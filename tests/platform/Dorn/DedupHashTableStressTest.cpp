// Threads that intern and release the same few values, so that lookups, last releases and
// insertions of new members race all the time. Made for the thread and address sanitizers. Without
// them, the tests check that every user sees a member, that the notices are consistent, and that no
// object is left.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/platform/Dorn/TestHandle.h"
#include "tests/stress/Stress.h"

namespace DornTest {
namespace {

constexpr U32 stressValues = 6;
constexpr int steps = 20000;

// Its handlers run under the table's notification lock, so its members need not be atomic.
class CountingObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(CountingObserver)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    if (++present[numberOf(*handle)] != 1) ++wrong;
    // Now and then the handler uses the table, as it may.
    if (++heard % 64 == 0) table->lookupByContent(NumberContent(0), Number::hashOf(0));
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    if (--present[numberOf(*handle)] != 0) ++wrong;
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  static U32 numberOf(const Dorn::DedupHandle& handle) {
    return static_cast<const Number&>(handle).number();
  }

  std::array<int, stressValues> present{};
  int heard = 0;
  int wrong = 0;
  Dorn::DedupHashTable* table = nullptr;
};
KIV_OBJECT_DEFINE(CountingObserver)

void work(const Dorn::DedupHashTable::Ptr& table, unsigned seed, int& wrong) {
  std::mt19937 random(seed);
  std::array<Number::Ptr, 3> held;
  for (int step = 0; step < steps; ++step) {
    const U32 value = static_cast<U32>(random() % stressValues);
    Number::Ptr got = random() % 2 == 0 ? intern(table, value) : find(table, value);
    if (got && (got->number() != value || !got->isDeduped())) ++wrong;
    held[random() % held.size()] = std::move(got);
  }
}

void run(bool observed) {
  const Stress::Threaded on;
  {
    const auto table = newTable(true);
    CountingObserver::Ptr observer(new CountingObserver);
    observer->table = table.ptr();
    if (observed) table->lifeTimeNotifieeIs(observer);
    std::array<int, 4> wrong{};
    Stress::inThreads(4, [&](unsigned i) { work(table, i + 1, wrong[i]); });
    EXPECT_EQ((std::array<int, 4>{}), wrong);
    EXPECT_EQ(0, observer->wrong);
    EXPECT_EQ((std::array<int, stressValues>{}), observer->present);
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0, Number::alive);
}

TEST(DedupHashTableStress, ThreadsShareAFewValues) { run(false); }
TEST(DedupHashTableStress, ThreadsShareAFewObservedValues) { run(true); }

// An observer is registered and unregistered while others intern: it never hears of a second
// insertion before a removal, nor of a removal before an insertion.
TEST(DedupHashTableStress, ObserverIsRegisteredAndUnregistered) {
  const Stress::Threaded on;
  {
    const auto table = newTable(true);
    std::array<int, 3> wrong{};
    const auto observe = [&] {
      for (int round = 0; round < 200; ++round) {
        const CountingObserver::Ptr observer(new CountingObserver);
        observer->table = table.ptr();
        table->lifeTimeNotifieeIs(observer);
        std::this_thread::yield();
        table->lifeTimeNotifieeDel();
        wrong[2] += observer->wrong;
      }
    };
    Stress::inThreads(3, [&](unsigned i) { i == 2 ? observe() : work(table, i + 10, wrong[i]); });
    EXPECT_EQ((std::array<int, 3>{}), wrong);
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0, Number::alive);
}

// Refuses every second insertion, when other threads may have found the member already.
class RefusingObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(RefusingObserver)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>&) override {
    if (++heard % 2 == 0) throw std::runtime_error("refused");
  }
  void handleRemove(Dorn::DedupHandle*) override {}
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  int heard = 0;
};
KIV_OBJECT_DEFINE(RefusingObserver)

void workRefused(const Dorn::DedupHashTable::Ptr& table, unsigned seed) {
  std::mt19937 random(seed);
  for (int step = 0; step < steps; ++step) {
    try {
      const Number::Ptr got = random() % 2 == 0 ? intern(table, 1) : find(table, 1);
    } catch (const std::runtime_error&) {
      // Threads that had found the member keep it as a detached handle.
    }
  }
}

TEST(DedupHashTableStress, RefusedValuesAreDestroyedByTheirLastUser) {
  const Stress::Threaded threaded;
  {
    const auto table = newTable(true);
    const RefusingObserver::Ptr observer(new RefusingObserver);
    table->lifeTimeNotifieeIs(observer);
    Stress::inThreads(4, [&](unsigned i) { workRefused(table, i + 1); });
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0, Number::alive);
}

// A child of fork() has none of the threads that may hold a lock at that moment. It must not use
// the parent's table, but can build tables and objects of its own.
bool childWorks() {
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);  // a lock that stays locked ends the child by a signal
    const auto own = newTable(true);
    std::vector<Number::Ptr> held;
    for (U32 i = 0; i < 100; ++i) held.push_back(intern(own, i));
    _exit(own->size() == 100 ? 0 : 1);
  }
  int status = -1;
  return waitpid(child, &status, 0) == child && status == 0;
}

TEST(DedupHashTableStress, ForkedChildBuildsTablesOfItsOwn) {
  const Stress::Threaded threaded;
  const auto table = newTable(true);
  std::atomic<bool> ended = false;
  std::thread other([&] {
    for (U32 i = 0; !ended; ++i) intern(table, i % 1000), newTable(true);
  });
  for (int i = 0; i < 40; ++i) EXPECT_TRUE(childWorks());
  ended = true;
  other.join();
}

}  // namespace
}  // namespace DornTest
