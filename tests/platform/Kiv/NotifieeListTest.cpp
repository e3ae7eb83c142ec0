#include "Kiv/NotifieeList.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

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
  // An observer that leaves in its own handler, within a nested notice.
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
  // Its own doing is no obstacle to removing all: it hears of each once.
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
