#include "Dorn/DedupHashTable.h"

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "tests/platform/Dorn/TestHandle.h"

namespace DornTest {
namespace {

// Records its notices, and runs the functions that a test gives it.
class Observer : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(Observer)

 public:
  explicit Observer(Interest interest = Interest::all) : DedupHashTableLifeTimeNotifiee(interest) {}
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    const auto& number = static_cast<const Number&>(*handle);
    if (throwOnInsert) throw std::runtime_error("refused");
    EXPECT_TRUE(present.insert(number.number()).second) << "two insertions of " << number.number();
    if (onInsert) onInsert(number.number());
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    EXPECT_TRUE(handle->beingDetached());
    EXPECT_FALSE(handle->isDeduped());
    const U32 number = static_cast<const Number*>(handle)->number();
    EXPECT_EQ(1U, present.erase(number)) << "no insertion of " << number;
    if (onRemove) onRemove(number);
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>& table) override {
    ++stops;
    sizeAtStop = table->size();
    present.clear();
    if (onStop) onStop();
  }

  std::set<U32> present;
  bool throwOnInsert = false;
  int stops = 0;
  U32 sizeAtStop = 0;
  std::function<void(U32)> onInsert;
  std::function<void(U32)> onRemove;
  std::function<void()> onStop;
};
KIV_OBJECT_DEFINE(Observer)

Observer::Ptr observe(const Dorn::DedupHashTable::Ptr& table) {
  const Observer::Ptr observer(new Observer);
  table->lifeTimeNotifieeIs(observer);
  return observer;
}

// Each fact must hold for a table for one thread and for a table with locks.
class DedupHashTableTest : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    Kiv::VFPtrInterface::threadSafePointers = GetParam();
    Number::hashModulus = 0;
    table_ = newTable(GetParam());
  }
  void TearDown() override {
    table_ = nullptr;
    EXPECT_EQ(0, Number::alive);
    Number::hashModulus = 0;
    Kiv::VFPtrInterface::threadSafePointers = false;
  }

  Dorn::DedupHashTable::Ptr table_;
};
INSTANTIATE_TEST_SUITE_P(Threads, DedupHashTableTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "Many" : "One"; });

TEST_P(DedupHashTableTest, EqualContentsShareOneObjectUntilTheLastRelease) {
  Number::Ptr first = intern(table_, 7);
  EXPECT_TRUE(first->isDeduped());
  EXPECT_EQ(2U, first->references());  // the table's and ours
  const Number::Ptr loser = Number::make(7);
  EXPECT_EQ(first, table_->dedup(loser));
  EXPECT_FALSE(loser->everDeduped());
  EXPECT_EQ(first, find(table_, 7));
  EXPECT_EQ(first, table_->dedup(first)) << "a member is recognised";
  EXPECT_EQ(1U, table_->size());

  first = nullptr;
  EXPECT_EQ(0U, table_->size());
  EXPECT_EQ(1, Number::alive) << "the loser";
  EXPECT_FALSE(find(table_, 7));
}

TEST_P(DedupHashTableTest, MatchesAModelUnderRandomUseAndBadHashes) {
  for (const U32 modulus : {0U, 1U, 3U, 40U}) {
    Number::hashModulus = modulus;
    // With one hash for all values, more members overflow than a counter can count.
    const U32 values = modulus == 0 ? 5000 : 400;
    std::map<U32, std::vector<Number::Ptr>> held;
    std::mt19937 random(20240611 + modulus);
    for (int step = 0; step < 30000; ++step) {
      const U32 value = static_cast<U32>(random() % values);
      auto& holders = held[value];
      // Alternately mostly insertions and mostly releases, so that the table fills and empties.
      const bool growing = step / 5000 % 2 == 0;
      if (random() % 4 < (growing ? 3U : 1U)) {
        holders.push_back(intern(table_, value));
        ASSERT_EQ(holders.front(), holders.back());
      } else if (!holders.empty()) {
        holders.pop_back();
      }
      const auto found = find(table_, value);
      ASSERT_EQ(!holders.empty(), static_cast<bool>(found)) << value;
      if (found) {
        ASSERT_EQ(holders.front(), found);
      }
    }
    U32 distinct = 0;
    for (const auto& [value, holders] : held) distinct += holders.empty() ? 0 : 1;
    EXPECT_EQ(distinct, table_->size());
    EXPECT_EQ(distinct, table_->members().size());
  }
}

// Few hashes in tables of each size, so that members overflow from bucket to bucket and around the
// end of the array.
TEST_P(DedupHashTableTest, FindsExactlyTheMembersAtEverySize) {
  for (U32 most = 1; most <= 60; ++most) {
    Number::hashModulus = 1 + most % 7;
    const auto table = newTable(GetParam());
    std::deque<Number::Ptr> held;
    for (U32 value = 0; value < 200; ++value) {
      ASSERT_FALSE(find(table, value));
      held.push_back(intern(table, value));
      if (held.size() > most) held.erase(held.begin() + value % most);
      for (const auto& number : held) ASSERT_EQ(number, find(table, number->number()));
      ASSERT_EQ(held.size(), table->size());
    }
  }
}

// Three hashes of one class, whose home buckets are the three buckets of a small table. Once the
// class has overflowed from each bucket, no counter of zero ends a miss.
TEST_P(DedupHashTableTest, FindsNothingWithoutEndlessSearch) {
  Number::hashModulus = 14;
  constexpr std::array<U32, 3> hashes{9, 11, 13};
  std::vector<Number::Ptr> held;
  std::mt19937 random(5);
  for (U32 round = 0; round < 2000; ++round) {
    held.push_back(intern(table_, 14 * round + hashes[round / 40 % 3]));
    if (held.size() > 14) held.erase(held.begin() + static_cast<int>(random() % 14));
    for (const U32 hash : hashes) EXPECT_FALSE(find(table_, 14 * 2000 + hash));
  }
}

TEST_P(DedupHashTableTest, HandlesOutliveTheirTable) {
  const Number::Ptr kept = intern(table_, 1);
  Number::Ptr holder = intern(table_, 2);
  Number* const raw = holder.ptr();
  // A member whose only user is another member.
  raw->onDestroy = [other = intern(table_, 3)] {};
  const Observer::Ptr observer = observe(table_);
  table_ = nullptr;
  EXPECT_EQ(1, observer->stops);
  EXPECT_EQ(3U, observer->sizeAtStop);
  EXPECT_FALSE(kept->isDeduped());
  EXPECT_TRUE(kept->everDeduped());
  EXPECT_EQ(1U, kept->references());
  EXPECT_EQ(3, Number::alive);
  holder = nullptr;
  EXPECT_EQ(1, Number::alive);
  // A detached handle may enter another table.
  const auto other = newTable(GetParam());
  EXPECT_EQ(kept, other->dedup(kept));
}

TEST_P(DedupHashTableTest, ObserverIsNotifiedOfEachChangeOnceAndInOrder) {
  const Number::Ptr before = intern(table_, 1);
  const Observer::Ptr observer = observe(table_);
  EXPECT_EQ(std::set<U32>{1}, observer->present) << "an observer is notified of existing members";
  Number::Ptr two = intern(table_, 2);
  const Number::Ptr again = intern(table_, 2);
  EXPECT_EQ((std::set<U32>{1, 2}), observer->present);
  two = nullptr;
  EXPECT_EQ((std::set<U32>{1, 2}), observer->present) << "still in use";

  const Observer::Ptr second(new Observer);
  table_->lifeTimeNotifieeIs(second);
  EXPECT_EQ(1, observer->stops);
  EXPECT_EQ((std::set<U32>{1, 2}), second->present);
  table_->lifeTimeNotifieeDel();
  EXPECT_EQ(1, second->stops);
  EXPECT_EQ(2U, table_->size()) << "members stay";
}

TEST_P(DedupHashTableTest, ObserverOfNotableMembersIsNotifiedOfNoOthers) {
  const auto internNotable = [this](U32 number) {
    const Number::Ptr handle = Number::make(number);
    handle->notableIs();
    return table_->dedup(handle);
  };
  auto one = internNotable(1);
  Number::Ptr two = intern(table_, 2);
  const Observer::Ptr observer(new Observer(Observer::Interest::notable));
  table_->lifeTimeNotifieeIs(observer);
  EXPECT_EQ(std::set<U32>{1}, observer->present);
  const auto three = internNotable(3);
  Number::Ptr four = intern(table_, 4);
  EXPECT_EQ((std::set<U32>{1, 3}), observer->present);
  EXPECT_TRUE(three->isDeduped() && three->isNotable() && !four->isNotable());
  one = nullptr;
  two = nullptr;
  four = nullptr;
  EXPECT_EQ(std::set<U32>{3}, observer->present);
  EXPECT_EQ(1U, table_->size());
  observe(table_);
  EXPECT_EQ(1, observer->stops);
}

TEST_P(DedupHashTableTest, DestroyedObserverIsUnregistered) {
  Observer::Ptr observer = observe(table_);
  Number::Ptr one = intern(table_, 1);
  observer = nullptr;
  one = nullptr;
  EXPECT_EQ(0U, table_->size());
}

// While an observer is told to stop, it may ask for the stop again, release and intern members, and
// give up its last reference. It is notified of none of that.
TEST_P(DedupHashTableTest, ObserverIsNotifiedOfNothingAfterItIsToldToStop) {
  Observer::Ptr observer = observe(table_);
  Observer* const raw = observer.ptr();
  Number::Ptr one = intern(table_, 1);
  raw->onStop = [&] {
    table_->lifeTimeNotifieeDel();
    one = nullptr;
    intern(table_, 2);
    EXPECT_EQ(1, raw->stops);
    EXPECT_TRUE(raw->present.empty());
    observer = nullptr;
  };
  table_->lifeTimeNotifieeDel();
  EXPECT_EQ(0U, table_->size());
}

// An observer that is unregistered, or replaced by another one, in the first notice of its own
// registration.
TEST_P(DedupHashTableTest, RegistrationThatAHandlerEndsIsNotContinued) {
  std::vector<Number::Ptr> held;
  for (U32 i = 0; i < 5; ++i) held.push_back(intern(table_, i));
  const Observer::Ptr other(new Observer);
  for (const Observer::Ptr& next : {Observer::Ptr(), other}) {
    const Observer::Ptr observer(new Observer);
    U32 heard = 0;
    observer->onInsert = [&](U32) {
      ++heard;
      table_->lifeTimeNotifieeIs(next);
    };
    table_->lifeTimeNotifieeIs(observer);
    EXPECT_EQ(1U, heard);
    EXPECT_TRUE(observer->present.empty());
  }
  EXPECT_EQ(held.size(), other->present.size());
}

TEST_P(DedupHashTableTest, ObserverMayInternAndReleaseInItsHandlers) {
  const Observer::Ptr observer = observe(table_);
  std::vector<Number::Ptr> kept;
  // The insertion of a value below 100 interns another value, which the removal releases.
  observer->onInsert = [&](U32 number) {
    if (number < 100) kept.push_back(intern(table_, number + 100));
    intern(table_, 1000);  // inserted and removed within the handler
  };
  observer->onRemove = [&](U32 number) {
    if (number < 100) kept.clear();
  };
  intern(table_, 5);
  EXPECT_EQ(std::set<U32>{}, observer->present);
  EXPECT_EQ(0U, table_->size());
  EXPECT_EQ(0, Number::alive);
}

TEST_P(DedupHashTableTest, ValueInternedAgainDuringItsRemovalIsANewObject) {
  const Observer::Ptr observer = observe(table_);
  Number::Ptr again;
  observer->onRemove = [&](U32 number) {
    if (!again) again = intern(table_, number);
  };
  intern(table_, 9);
  ASSERT_TRUE(again);
  EXPECT_TRUE(again->isDeduped());
  EXPECT_EQ(std::set<U32>{9}, observer->present);
  observer->onRemove = nullptr;
}

TEST_P(DedupHashTableTest, InsertionThatTheObserverRefusesIsUndone) {
  const Observer::Ptr observer = observe(table_);
  observer->throwOnInsert = true;
  Number::Ptr handle = Number::make(4);
  EXPECT_THROW(table_->dedup(handle), std::runtime_error);
  EXPECT_EQ(0U, table_->size());
  EXPECT_EQ(1U, handle->references());
  observer->throwOnInsert = false;
  EXPECT_EQ(handle, table_->dedup(handle));
  // A removal cannot be undone, so it stands.
  observer->onRemove = [](U32) { throw std::runtime_error("refused"); };
  handle = nullptr;
  EXPECT_EQ(0U, table_->size());
  EXPECT_EQ(0, Number::alive);
  observer->onRemove = nullptr;
}

TEST_P(DedupHashTableTest, NotifierReferenceRaisesTheIdleCount) {
  Number::Ptr user = intern(table_, 3);
  Number::Ptr notifier = user;
  user->haveLifeTimeNotifierIs(true);
  user = nullptr;
  EXPECT_EQ(0U, table_->size()) << "only table and notifier were left";
  EXPECT_EQ(1U, notifier->references());
  notifier->haveLifeTimeNotifierIs(false);

  // If the flag is cleared while users remain, the idle count is 1 again.
  Number::Ptr other = intern(table_, 3);
  Number::Ptr second = other;
  other->haveLifeTimeNotifierIs(true);
  other->haveLifeTimeNotifierIs(false);
  other = nullptr;
  EXPECT_EQ(1U, table_->size());
  second = nullptr;
  EXPECT_EQ(0U, table_->size());
}

TEST_P(DedupHashTableTest, StoreRebuiltHandlesAreCountedWithoutATable) {
  Number::Ptr rebuilt = Number::make(1);
  rebuilt->dedupStateIs(Dorn::DedupHandleState::rebuilt);
  Number::Ptr second = rebuilt;
  rebuilt = nullptr;
  EXPECT_EQ(1, Number::alive);
  second = nullptr;
  EXPECT_EQ(0, Number::alive);
}

TEST_P(DedupHashTableTest, ReleaseDoesNothingWhileSwitchedOff) {
  Number::Ptr user = intern(table_, 3);
  const Number* const raw = user.ptr();
  Dorn::dedupHandleDisableSmartPointerOperations = true;
  EXPECT_EQ(1U, raw->referencesDec());
  EXPECT_EQ(1U, raw->referencesDec());
  Dorn::dedupHandleDisableSmartPointerOperations = false;
  EXPECT_EQ(2U, raw->references());
}

TEST_P(DedupHashTableTest, DumpsItsSize) {
  const Number::Ptr one = intern(table_, 1);
  std::ostringstream out;
  const auto context = Dorn::dumpContextFactory(out);
  table_->dumpState(context, 0);
  table_->dumpState(context, 3);
  EXPECT_EQ("DedupHashTable members #1;\n   DedupHashTable members #1;\n", out.str());
}

// More tables than numbers: freed numbers are used again, and the search skips those in use.
TEST(DedupHashTable, MembersFindTheirTableAmongAnyNumberOfOthers) {
  const auto first = newTable();
  const Number::Ptr member = intern(first, 1);
  for (U32 i = 0; i < 0x10003; ++i) {
    const auto table = newTable();
    const Number::Ptr other = intern(table, 1);
    EXPECT_NE(member, other);
  }
  std::vector<Dorn::DedupHashTable::Ptr> tables{first};
  try {
    for (;;) tables.push_back(newTable());
  } catch (const std::length_error&) {
  }
  // Tables with locks, which earlier tests made, keep their numbers.
  EXPECT_LE(0x10000U - 64, tables.size());
  EXPECT_EQ(1U, first->size());
}

TEST(DedupHandleDeathTest, MisuseStopsTheProcess) {
  EXPECT_DEATH(
      newTable(true),
      "multiThreaded\\(\\) \\|\\| Kiv::VFPtrInterface::threadSafePointers.*Dorn/DedupHashTable");
  const auto table = newTable();
  const auto observer = observe(table);
  Number* detached = nullptr;
  observer->onRemove = [&](U32) { Number::Ptr mistake(detached); };
  EXPECT_DEATH(
      {
        Number::Ptr one = intern(table, 1);
        detached = one.ptr();
        one = nullptr;
      },
      "assertion \"!beingDetached\\(\\)\" failed in Dorn/DedupHandle:");
  EXPECT_DEATH(Number::make(1)->assertIsDeduped(),
               "\"isDeduped\\(\\)\" failed in Dorn/DedupHandle");
  const Number::Ptr member = intern(table, 2);
  EXPECT_DEATH(newTable()->dedup(member), "Dorn/DedupHashTable");
}

TEST(DumpContextTest, PrintsLongTextsWholeAndNoIndentAtZero) {
  std::ostringstream out;
  const auto context = Dorn::dumpContextFactory(out);
  Dorn::objDumpIndent(context, 0);
  Dorn::objDumpIndent(context, 2);
  Dorn::objDumpIndent(context, 0xFFFFFFFE);
  EXPECT_EQ("    ", out.str());
  const std::string longText(1000, 'x');
  Dorn::objDumpPrintf(context, "%s", longText.c_str());
  EXPECT_EQ("    " + longText, out.str());
}

}  // namespace
}  // namespace DornTest
