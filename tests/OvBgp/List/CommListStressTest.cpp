// Several threads intern and release the same few lists, some from attributes and some built
// with commIs, while an observer is registered. A routing daemon does this all the time.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "OvBgp/OvBgpCommunityList.h"
#include "tests/OvBgp/MultiThreaded.h"

namespace Routing::Bgp {
namespace {

constexpr std::array<U32, 4> communities{0x00010001, 0x00020002, 0x00030003, 0xFFFFFF01};

class ListObserver : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(ListObserver)

 public:
  // Runs under the table's notification lock, so the members need no lock of their own.
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    wrong += present.insert(textOf(*handle)).second ? 0 : 1;
  }
  void handleRemove(Dorn::DedupHandle* handle) override {
    wrong += present.erase(textOf(*handle)) == 1 ? 0 : 1;
  }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  static Kiv::String textOf(const Dorn::DedupHandle& handle) {
    return static_cast<const CommList&>(handle).toStrep();
  }

  std::set<Kiv::String> present;
  int wrong = 0;
};
KIV_OBJECT_DEFINE(ListObserver)

CommList::PtrConst fromWire(const CommListDedupTable::Ptr& table, U32 subset) {
  std::vector<U8> value;
  for (U32 i = 0; i < communities.size(); ++i) {
    // Every second subset is in descending order, so that the slow path is tested, too.
    const U32 at = subset % 2 == 0 ? i : static_cast<U32>(communities.size()) - 1 - i;
    if ((subset >> at & 1) == 0) continue;
    for (const int shift : {24, 16, 8, 0})
      value.push_back(static_cast<U8>(communities[at] >> shift));
  }
  return CommList::dedupAttributeValue(table.ptr(), value);
}

CommList::PtrConst byHand(const CommListDedupTable::Ptr& table, U32 subset) {
  const CommList::Ptr list = commListFactory();
  for (U32 i = 0; i < communities.size(); ++i) {
    if (subset >> i & 1) list->commIs(communities[i]);
  }
  return list->dedup(table.ptr());
}

void work(const CommListDedupTable::Ptr& table, unsigned seed, int& wrong) {
  std::mt19937 random(seed);
  std::array<CommList::PtrConst, 4> routes;
  for (int step = 0; step < 10000; ++step) {
    const U32 subset = static_cast<U32>(random() % 16);
    auto list = random() % 2 == 0 ? fromWire(table, subset) : byHand(table, subset);
    if (list->comms() != static_cast<U32>(__builtin_popcount(subset))) ++wrong;
    if (list->noExport() != ((subset & 8) != 0)) ++wrong;
    routes[random() % routes.size()] = std::move(list);
  }
}

TEST(CommListStress, ThreadsShareAFewObservedLists) {
  const MultiThreaded several;
  {
    const auto table = commListDedupTableFactory();
    const ListObserver::Ptr observer(new ListObserver);
    table->dedupTable()->lifeTimeNotifieeIs(observer);
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < wrong.size(); ++i) {
      threads.emplace_back([&, i] { work(table, i, wrong[i]); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ((std::array<int, 4>{}), wrong);
    EXPECT_EQ(0, observer->wrong);
    EXPECT_TRUE(observer->present.empty());
    EXPECT_EQ(0U, table->size());
  }
  EXPECT_EQ(0U, CommList::kivType().objects());
}

}  // namespace
}  // namespace Routing::Bgp
