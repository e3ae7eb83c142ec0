#include "tools/bgp-communities/rib/RouteTable.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>

namespace CommTool {
namespace {

// A simple model of the table: a map, with one list for each value.
TEST(RouteTable, HoldsWhatAMapHolds) {
  using Routing::Bgp::CommList;
  std::mt19937 random(1);
  std::array<CommList::PtrConst, 4> lists;
  for (auto& list : lists) list = Routing::Bgp::commListFactory();
  const auto keyOf = [](U32 number) {
    Nlri nlri;
    nlri.prefix.network.octets[3] = static_cast<U8>(number);
    return RouteKey(number >> 8, nlri);
  };
  const auto lookedUp = [](const RouteTable& table) {
    std::map<U64, const CommList*> found;
    for (const auto& [key, communities] : table) found[key.hash()] = communities.standard.ptr();
    return found;
  };
  RouteTable table;
  std::map<U64, const CommList*> model;
  for (U32 step = 0; step < 200'000; ++step) {
    // Grows to thousands of routes and shrinks to a few, several times.
    const bool isGrowing = step / 20'000 % 2 == 0;
    const RouteKey key = keyOf(static_cast<U32>(random() % 6000));
    if (random() % 8 < (isGrowing ? 6U : 1U)) {
      const auto& list = lists[random() % lists.size()];
      table.insertOrAssign(key, {.standard = list, .large = {}, .extended = {}, .ip6Extended = {}});
      model[key.hash()] = list.ptr();
    } else {
      table.erase(key);
      model.erase(key.hash());
    }
    ASSERT_EQ(model.size(), table.size());
    if (step % 5'000 == 0) {
      ASSERT_EQ(model, lookedUp(table));
    }
  }
  EXPECT_EQ(model, lookedUp(table));
}

}  // namespace
}  // namespace CommTool
