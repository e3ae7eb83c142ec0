#include "Kiv/NotifyingMap.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Kiv {
namespace {

struct Numbers {
  using Key = int;
  using Value = int;
  static constexpr char memberName[] = "Host::KivNumber";
};
using NumberMap = NotifyingMap<Numbers>;
using Entries = std::vector<std::pair<int, int>>;

template <class Traits>
class Host final : public PtrInterface {
  KIV_OBJECT(Host)

 public:
  static constexpr U32 attribute = 7;

  static Ptr make() {
    Ptr host(new Host);
    host->hasNotificationActiveIs(true);
    return host;
  }
  NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

 private:
  mutable NotifieeList notifieeList_;

 public:
  NotifyingMap<Traits> entries{*this, attribute};
};
template <class Traits>
Type& Host<Traits>::kivType() noexcept {
  static constinit Type record{"Host"};
  return record;
}
template <class Traits>
const Type& Host<Traits>::fwkType() const noexcept {
  return kivType();
}
using NumberHost = Host<Numbers>;

// Records the key of each notification with the value that the map has for it then; -1: no entry.
class Observer : public Notifiee {
 public:
  explicit Observer(const NumberHost::Ptr& host) : map_(host->entries) {
    notifierIs(host->notifieeList());
  }
  void handleChange(const Change& change) override {
    EXPECT_EQ(NumberHost::attribute, change.attribute());
    const int key = change.key<int>();
    const auto found = map_.find(key);
    heard.emplace_back(key, found == map_.end() ? -1 : found->value());
    if (handler) handler(key);
  }

  Entries heard;
  std::function<void(int)> handler;

 private:
  const NumberMap& map_;
};

Entries entriesOf(const NumberMap& map) {
  Entries entries;
  for (const NumberMap::Member& member : map) entries.emplace_back(member.key(), member.value());
  return entries;
}

class NotifyingMapTest : public testing::Test {
 protected:
  NumberHost::Ptr host_ = NumberHost::make();
  NumberMap& map_ = host_->entries;
};

TEST_F(NotifyingMapTest, KeepsKeysInOrderAndTellsOfChangesAlone) {
  Observer observer(host_);
  EXPECT_TRUE(map_.empty());
  EXPECT_TRUE(map_.set(3, 30));
  EXPECT_TRUE(map_.set(1, 10));
  EXPECT_FALSE(map_.set(3, 30));
  EXPECT_TRUE(map_.set(3, 31));
  EXPECT_FALSE(map_.del(2));
  EXPECT_TRUE(map_.set(2, 20));
  EXPECT_EQ((Entries{{1, 10}, {2, 20}, {3, 31}}), entriesOf(map_));
  EXPECT_TRUE(map_.del(1));
  EXPECT_FALSE(map_.del(1));
  EXPECT_FALSE(map_.has(1));
  EXPECT_TRUE(map_.has(2));
  EXPECT_EQ(map_.end(), map_.find(1));
  EXPECT_EQ(2U, map_.size());
  EXPECT_EQ((Entries{{3, 30}, {1, 10}, {3, 31}, {2, 20}, {1, -1}}), observer.heard);

  host_->hasNotificationActiveIs(false);
  map_.set(9, 90);
  map_.set(9, 91);
  map_.del(2);
  map_.delAll();
  EXPECT_EQ(5U, observer.heard.size());
  EXPECT_TRUE(map_.empty());
}

TEST_F(NotifyingMapTest, AnEntryKeepsItsObjectUntilItIsDeleted) {
  const Type& record = NumberMap::Member::kivType();
  EXPECT_EQ("Host::KivNumber", record.name());
  map_.set(1, 10);
  const NumberMap::Member::PtrConst kept(&*map_.find(1));
  map_.set(1, 11);
  EXPECT_EQ(kept.ptr(), &*map_.find(1));
  EXPECT_EQ(11, kept->value());
  map_.del(1);
  map_.set(1, 12);
  EXPECT_NE(kept.ptr(), &*map_.find(1));
  EXPECT_EQ(std::pair(1, 11), std::pair(kept->key(), kept->value()));
  EXPECT_EQ(2U, record.objects());
}

TEST_F(NotifyingMapTest, IteratorsOutliveEveryChange) {
  for (int key = 0; key < 10; ++key) map_.set(key, key);
  auto stale = map_.find(4);
  for (auto at = map_.begin(); at != map_.end(); ++at) {
    if (at->key() % 2 == 1) continue;
    EXPECT_TRUE(map_.del(at));
  }
  EXPECT_EQ((Entries{{1, 1}, {3, 3}, {5, 5}, {7, 7}, {9, 9}}), entriesOf(map_));
  EXPECT_FALSE(map_.del(stale));
  map_.set(4, 44);
  EXPECT_FALSE(map_.del(stale)) << "another entry of the same key";
  EXPECT_EQ(4, (stale++)->value());
  EXPECT_EQ(5, stale->key());
  map_.delAll();
  EXPECT_EQ(map_.end(), ++stale);
}

TEST_F(NotifyingMapTest, ObserversMayChangeTheMap) {
  for (int key = 1; key <= 3; ++key) map_.set(key, key);
  Observer observer(host_);
  observer.handler = [&](int key) {
    if (key == 1 && map_.has(1)) map_.del(1);
    if (key == 2 && !map_.has(2)) map_.set(20, 0);
  };
  // The key of the notification is the key of an entry that the observer removes meanwhile.
  map_.set(map_.find(1)->key(), 100);
  map_.delAll();
  EXPECT_EQ((Entries{{1, 100}, {1, -1}, {2, -1}, {20, 0}, {3, -1}}), observer.heard);
  EXPECT_EQ((Entries{{20, 0}}), entriesOf(map_));
}

TEST_F(NotifyingMapTest, AnObserverMayLetGoOfTheObject) {
  const auto letGo = [](const auto& change) {
    auto host = NumberHost::make();
    host->entries.set(1, 1);
    Observer observer(host);
    observer.handler = [&host](int) { host = nullptr; };
    change(host->entries);
    EXPECT_EQ(1U, observer.heard.size());
  };
  letGo([](NumberMap& map) { EXPECT_TRUE(map.set(2, 2)); });
  letGo([](NumberMap& map) { EXPECT_TRUE(map.set(1, 2)); });
  letGo([](NumberMap& map) { EXPECT_TRUE(map.del(1)); });
  letGo([](NumberMap& map) { EXPECT_TRUE(map.del(map.begin())); });
  letGo([](NumberMap& map) { map.delAll(); });
  EXPECT_EQ(1U, NumberHost::kivType().objects());
}

TEST_F(NotifyingMapTest, WhatAnObserverThrowsUndoesAnInsertionAlone) {
  Observer observer(host_);
  bool isRefused = true;
  observer.handler = [&](int) {
    if (isRefused) throw std::runtime_error("refused");
  };
  EXPECT_THROW(map_.set(1, 10), std::runtime_error);
  EXPECT_TRUE(map_.empty());
  isRefused = false;
  map_.set(1, 10);
  isRefused = true;
  EXPECT_THROW(map_.set(1, 11), std::runtime_error);
  EXPECT_EQ((Entries{{1, 10}}), entriesOf(map_));
  // An inner replacement fails, its exception passes through the handler, and both are undone.
  bool isFirst = true;
  observer.handler = [&](int) {
    if (std::exchange(isFirst, false)) map_.set(1, 12);
    if (map_.find(1)->value() == 12) throw std::runtime_error("refused");
  };
  EXPECT_THROW(map_.set(1, 11), std::runtime_error);
  EXPECT_EQ((Entries{{1, 10}}), entriesOf(map_));
  // An inner replacement of which all were notified stands.
  Observer second(host_);
  observer.handler = [&](int) {
    if (map_.find(1)->value() == 11) map_.set(1, 13);
  };
  second.handler = [&](int) {
    if (second.heard.size() == 2) throw std::runtime_error("refused");
  };
  EXPECT_THROW(map_.set(1, 11), std::runtime_error);
  EXPECT_EQ((Entries{{1, 13}}), entriesOf(map_));
  observer.handler = [](int) { throw std::runtime_error("refused"); };
  EXPECT_TRUE(map_.del(1));
  EXPECT_TRUE(map_.empty());
}

// Values with a deleter that runs a function of the test.
struct Callbacks {
  using Key = int;
  using Value = std::shared_ptr<int>;
  static constexpr char memberName[] = "Host::KivCallback";
};

TEST(NotifyingMap, AReplacedValueMayChangeTheMapAsItEnds) {
  const auto host = Host<Callbacks>::make();
  auto& map = host->entries;
  map.set(1, std::shared_ptr<int>(new int(1), [&map](const int* gone) {
            delete gone;
            map.del(1);
          }));
  EXPECT_TRUE(map.set(1, std::make_shared<int>(2)));
  EXPECT_TRUE(map.empty());
}

TEST_F(NotifyingMapTest, AgreesWithAModel) {
  Observer observer(host_);
  std::map<int, int> model;
  std::mt19937 random(20);
  std::size_t changes = 0;
  for (int step = 0; step < 20000; ++step) {
    const int key = static_cast<int>(random() % 40);
    const int value = static_cast<int>(random() % 3);
    switch (random() % 4) {
      case 0:
        changes += model.erase(key);
        map_.del(key);
        break;
      case 1:
        if (const auto at = map_.find(key); at != map_.end()) {
          changes += model.erase(key);
          map_.del(at);
        }
        break;
      default:
        if (!model.contains(key) || model[key] != value) ++changes;
        model[key] = value;
        map_.set(key, value);
    }
    ASSERT_EQ(model.size(), map_.size());
  }
  EXPECT_EQ(Entries(model.begin(), model.end()), entriesOf(map_));
  EXPECT_EQ(changes, observer.heard.size());
}

}  // namespace
}  // namespace Kiv
