// Threads that intern and release the same few stressValues, so that lookups, last
// releases and insertions of successors meet all the time. Made for the thread
// and address sanitizers; what it checks by itself is that every user sees a
// member, that the observer's picture is never wrong, and that nothing is left.
#include <gtest/gtest.h>

#include <array>
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

// Runs under the table's notification lock, so plain members will do.
class CountingObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(CountingObserver)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    if (++present[numberOf(*handle)] != 1) ++wrong;
    // Every now and then an observer has business with the table itself.
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
  const ThreadSafePointers on;
  {
    const auto table = newTable(true);
    CountingObserver::Ptr observer(new CountingObserver);
    observer->table = table.ptr();
    if (observed) table->lifeTimeNotifieeIs(observer);
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < wrong.size(); ++i) {
      threads.emplace_back([&, i] { work(table, i + 1, wrong[i]); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ((std::array<int, 4>{}), wrong);
    EXPECT_EQ(0, observer->wrong);
    EXPECT_EQ((std::array<int, stressValues>{}), observer->present);
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0, Number::alive);
}

TEST(DedupHashTableStress, ThreadsShareAFewValues) { run(false); }
TEST(DedupHashTableStress, ThreadsShareAFewObservedValues) { run(true); }

// The observer comes and goes while others intern: it never hears half of a story.
TEST(DedupHashTableStress, ObserverComesAndGoes) {
  const ThreadSafePointers on;
  {
    const auto table = newTable(true);
    std::array<int, 2> wrong{};
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < wrong.size(); ++i) {
      threads.emplace_back([&, i] { work(table, i + 10, wrong[i]); });
    }
    int observerWrong = 0;
    for (int round = 0; round < 200; ++round) {
      const CountingObserver::Ptr observer(new CountingObserver);
      observer->table = table.ptr();
      table->lifeTimeNotifieeIs(observer);
      std::this_thread::yield();
      table->lifeTimeNotifieeDel();
      observerWrong += observer->wrong;
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ((std::array<int, 2>{}), wrong);
    EXPECT_EQ(0, observerWrong);
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0, Number::alive);
}

// Refuses every other one, while other threads have found it already.
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
      // Those who found it have it to themselves.
    }
  }
}

TEST(DedupHashTableStress, RefusedValuesGoWithTheirLastUser) {
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

}  // namespace
}  // namespace DornTest
