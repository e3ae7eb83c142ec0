#include "Kiv/NotifieeList.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

#include "Kiv/Detail/FlatSet.h"
#include "Kiv/NotifyingSet.h"
#include "Kiv/Trace.h"

namespace {

using Heard = std::vector<int>;

class Ear : public Kiv::Notifiee {
 public:
  explicit Ear(Kiv::NotifieeList& list) { notifierIs(&list); }
  void handleChange(const Kiv::Change& change) override {
    EXPECT_EQ(7U, change.attribute());
    heard.push_back(change.key<int>());
    if (then) then();
  }
  Heard heard;
  std::function<void()> then;
};

TEST(NotifieeList, ObserversMayComeAndGoDuringANotice) {
  Kiv::NotifieeList list;
  Ear first(list);
  auto doomed = std::make_unique<Ear>(list);
  Ear last(list);
  std::optional<Ear> late;
  first.then = [&] {
    doomed.reset();
    if (!late) late.emplace(list);
  };
  list.notify(Kiv::Change(7, 1));
  EXPECT_EQ(Heard{1}, first.heard);
  EXPECT_EQ(Heard{1}, last.heard) << "those behind one that left still hear";
  EXPECT_EQ(Heard{}, late->heard) << "it came during the notice";
  EXPECT_EQ(3U, list.size());
  // An observer changes the object in its handler (a nested notification) and unregisters itself in
  // the nested one.
  first.then = [&] {
    if (first.heard.back() == 2) {
      list.notify(Kiv::Change(7, 3));
    } else {
      first.notifierIs(nullptr);
    }
  };
  list.notify(Kiv::Change(7, 2));
  EXPECT_EQ((Heard{1, 2, 3}), first.heard);
  EXPECT_EQ((Heard{1, 3, 2}), last.heard);
  EXPECT_EQ((Heard{3, 2}), late->heard);
  EXPECT_EQ(2U, list.size());
}

TEST(NotifieeList, MayBeDestroyedByAnObserver) {
  auto list = std::make_unique<Kiv::NotifieeList>();
  Ear first(*list);
  Ear second(*list);
  first.then = [&] { list.reset(); };
  list->notify(Kiv::Change(7, 1));
  EXPECT_EQ(nullptr, first.notifier());
  EXPECT_EQ(nullptr, second.notifier());
  EXPECT_EQ(Heard{}, second.heard);
}

TEST(NotifieeListDeathTest, KeyHasItsAttributesType) {
  const Kiv::Change change(1, 5);
  EXPECT_DEATH(change.key<long>(), "Kiv/NotifieeList");
}

class Owner : public Kiv::PtrInterface {
  KIV_OBJECT(Owner)

 public:
  Kiv::NotifieeList* notifieeList() const noexcept override { return &list; }

  mutable Kiv::NotifieeList list;
  Kiv::NotifyingSet<int> set{*this, 7};
};
KIV_OBJECT_DEFINE(Owner)

// Random operations against std::set as a model. The hash has five values only, so that long runs
// of occupied slots are probed and closed up; the empty key is among the keys.
TEST(FlatSet, HoldsWhatAPlainSetHolds) {
  struct Crowded {
    std::size_t operator()(int key) const noexcept { return static_cast<std::size_t>(key % 5); }
  };
  Kiv::FlatSet<int, Crowded> set;
  std::set<int> plain;
  std::mt19937 random(7);
  for (int step = 0; step < 4000; ++step) {
    const int key = static_cast<int>(random() % 64);
    // The set grows, shrinks until it is empty, and grows again.
    if (random() % 8 < (step / 1000 % 2 == 0 ? 6 : 2)) {
      EXPECT_EQ(plain.insert(key).second, set.add(key));
    } else {
      EXPECT_EQ(plain.erase(key) != 0, set.del(key));
    }
    ASSERT_EQ(plain.size(), set.size());
    ASSERT_EQ(plain.contains(key), set.has(key));
    if (step % 50 == 0) {
      EXPECT_EQ(plain, std::set<int>(set.begin(), set.end()));
      for (int other = 0; other < 64; ++other) ASSERT_EQ(plain.contains(other), set.has(other));
    }
  }
}

TEST(FlatSet, DropsWhatItsKeysHold) {
  const Owner::Ptr owner(new Owner);
  {
    Kiv::FlatSet<Owner::Ptr> set;
    EXPECT_TRUE(set.add(owner));
    for (int i = 0; i < 20; ++i) set.add(Owner::Ptr(new Owner));
    EXPECT_EQ(2U, owner->references());
    EXPECT_TRUE(set.del(owner));
    EXPECT_FALSE(set.has(owner));
    EXPECT_EQ(1U, owner->references());
    set.add(owner);
  }
  EXPECT_EQ(1U, owner->references());
}

TEST(NotifyingSet, TellsOfChangesOnly) {
  const Owner::Ptr owner(new Owner);
  auto& set = owner->set;
  Ear ear(owner->list);
  set.add(9);
  set.del(9);
  EXPECT_EQ(Heard{}, ear.heard) << "the owner's notification is off";
  owner->hasNotificationActiveIs(true);
  EXPECT_TRUE(set.add(1));
  EXPECT_FALSE(set.add(1));
  EXPECT_TRUE(set.add(2));
  EXPECT_TRUE(set.del(1));
  EXPECT_FALSE(set.del(1));
  EXPECT_EQ((Heard{1, 2, 1}), ear.heard);
  set.add(3);
  // An observer that removes keys itself during delAll() is notified of each key once.
  ear.heard.clear();
  ear.then = [&] {
    set.del(2);
    set.del(3);
  };
  set.delAll();
  EXPECT_EQ(2U, ear.heard.size());
  EXPECT_EQ(0U, set.size());
}

// Three observers of one set. The middle one throws if `isRefused` says so.
class ThrowingObserver : public testing::Test {
 protected:
  ThrowingObserver() {
    owner->hasNotificationActiveIs(true);
    second.then = [this] {
      if (isRefused()) throw std::runtime_error("refused");
    };
  }
  // Checks that inserting `key` fails and changes nothing, and what the observers heard.
  void expectRefused(int key, const Heard& byFirst, const Heard& byLast) {
    EXPECT_THROW(set.add(key), std::runtime_error);
    EXPECT_FALSE(set.has(key));
    EXPECT_EQ(byFirst, first.heard);
    EXPECT_EQ(byLast, last.heard);
  }

  Owner::Ptr owner{new Owner};
  Kiv::NotifyingSet<int>& set = owner->set;
  Ear first{owner->list};
  Ear second{owner->list};
  Ear last{owner->list};
  std::function<bool()> isRefused = [] { return true; };
};

TEST_F(ThrowingObserver, InsertionIsUndoneForThoseThatHeardOfIt) {
  expectRefused(1, {1, 1}, {});
  EXPECT_EQ((Heard{1, 1}), second.heard);
  // The exception of an inner insertion passes through the handler of the first observer.
  first.heard.clear();
  first.then = [this] {
    if (first.heard.back() == 1 && set.has(1)) set.add(2);
  };
  isRefused = [this] { return second.heard.back() == 2 && set.has(2); };
  expectRefused(1, {1, 2, 2, 1}, {});
  EXPECT_FALSE(set.has(2));
  // An observer that leaves does not hear of the undoing, and entries that were there stay.
  isRefused = [this] {
    first.notifierIs(nullptr);
    return set.has(9);
  };
  EXPECT_TRUE(set.add(8));
  first.heard.clear();
  last.heard.clear();
  expectRefused(9, {}, {});
  EXPECT_TRUE(set.has(8));
}

TEST_F(ThrowingObserver, RemovalStandsAndIsTraced) {
  isRefused = [] { return false; };
  for (const int key : {1, 2, 3}) set.add(key);
  isRefused = [] { return true; };
  last.heard.clear();
  std::vector<Kiv::String> lines;
  Kiv::traceSinkIs([&lines](std::string_view line) {
    lines.emplace_back(line);
    if (lines.size() == 2) throw std::runtime_error("a sink that throws");
  });
  Kiv::traceLevelsIs("Kiv/0");
  EXPECT_TRUE(set.del(1));
  set.delAll();
  Kiv::traceLevelsIs("");
  Kiv::traceSinkIs(nullptr);
  EXPECT_EQ(0U, set.size());
  EXPECT_EQ(3U, last.heard.size());
  ASSERT_EQ(3U, lines.size());
  EXPECT_NE(Kiv::String::npos, lines[0].find("observer of a removal threw: refused"));
}

// The undoing of an insertion leaves alone what an observer has done to the same key meanwhile.
TEST_F(ThrowingObserver, LaterChangesOfTheSameKeyStand) {
  first.then = [this] {
    if (first.heard.size() > 1) return;
    set.del(1);
    set.add(1);
  };
  isRefused = [this] { return second.heard.size() == 3; };
  EXPECT_THROW(set.add(1), std::runtime_error);
  EXPECT_TRUE(set.has(1));
  EXPECT_EQ((Heard{1, 1, 1}), first.heard);
  EXPECT_EQ((Heard{1, 1}), last.heard);
}

TEST_F(ThrowingObserver, MayDestroyTheSetAsWell) {
  isRefused = [this] {
    owner = nullptr;
    return true;
  };
  EXPECT_THROW(set.add(1), std::runtime_error);
  EXPECT_EQ(Heard{1}, first.heard);
  EXPECT_EQ(0U, Owner::kivType().objects());
}

// A change that nobody can undo.
TEST_F(ThrowingObserver, EndsAPlainNotification) {
  EXPECT_THROW(owner->list.notify(Kiv::Change(7, 1)), std::runtime_error);
  EXPECT_EQ(Heard{1}, first.heard);
  EXPECT_EQ(Heard{}, last.heard);
}

}  // namespace
