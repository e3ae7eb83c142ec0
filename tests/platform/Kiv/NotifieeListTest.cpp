#include "Kiv/NotifieeList.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include "Kiv/Detail/FlatSet.h"
#include "Kiv/NotifyingSet.h"

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

TEST(NotifieeList, SurvivesAnObserverThatThrows) {
  Kiv::NotifieeList list;
  Ear first(list);
  auto second = std::make_unique<Ear>(list);
  first.then = [&] {
    second.reset();
    throw 1;
  };
  EXPECT_THROW(list.notify(Kiv::Change(7, 1)), int);
  first.then = nullptr;
  list.notify(Kiv::Change(7, 2));
  EXPECT_EQ((Heard{1, 2}), first.heard);
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

}  // namespace
