// Several threads intern and release the same few lists. The last release of a list also
// releases its sub-lists and values, while other threads look these up.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <thread>
#include <vector>

#include "tests/OvBgp/List/ExtCommListKit.h"
#include "tests/OvBgp/MultiThreaded.h"

namespace Routing::Bgp {
namespace {

template <class Kind>
struct StressTables {
  using Family = typename Kind::Family;
  using List = typename Family::List;

  // The values whose bits are set in `subset`; in descending order if `subset` is odd.
  std::vector<Kiv::Ptr<const typename Family::Value>> members(U32 subset) const {
    std::vector<Kiv::Ptr<const typename Family::Value>> comms;
    for (U32 i = 0; i < 6; ++i) {
      const U32 at = subset % 2 == 0 ? i : 5 - i;
      if ((subset >> at & 1) != 0) comms.push_back(Kind::value(*values, at));
    }
    return comms;
  }
  Kiv::Ptr<const List> fromWire(U32 subset) const {
    std::vector<U8> octets;
    for (U32 at = 0; at < 6; ++at) {
      if ((subset >> at & 1) == 0) continue;
      for (const char c : Kind::wire(Kind::content(at))) octets.push_back(static_cast<U8>(c));
    }
    return List::dedupAttributeValue(lists.ptr(), values.ptr(), octets);
  }
  Kiv::Ptr<const List> byHand(U32 subset) const {
    const auto list = Kind::list();
    for (const auto& comm : members(subset)) list->commIs(comm);
    return list->dedup(lists.ptr());
  }

  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  const Kiv::Ptr<typename Family::ValueTable> values = Kind::valueTable(*parser);
  const Kiv::Ptr<typename Family::ListTable> lists = Kind::listTable();
};

template <class Kind>
void work(const StressTables<Kind>& tables, unsigned seed, int& wrong) {
  std::mt19937 random(seed);
  std::array<Kiv::Ptr<const typename Kind::Family::List>, 4> routes;
  for (int step = 0; step < 5000; ++step) {
    const U32 subset = static_cast<U32>(random() % 64);
    auto list = random() % 2 == 0 ? tables.fromWire(subset) : tables.byHand(subset);
    if (list->totalCommunities() != static_cast<U32>(__builtin_popcount(subset))) ++wrong;
    for (const auto& part : list->classificationListVector()) {
      if (part && !part->isDeduped()) ++wrong;
    }
    routes[random() % routes.size()] = std::move(list);
  }
}

template <class Kind>
class ExtCommListStress : public testing::Test {
 protected:
  const MultiThreaded several_;
};
using StressKinds = testing::Types<ExtCommKind, ExtCommIp6Kind>;
TYPED_TEST_SUITE(ExtCommListStress, StressKinds);

TYPED_TEST(ExtCommListStress, ThreadsShareAFewListsAndLeaveNothing) {
  {
    const StressTables<TypeParam> tables;
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < wrong.size(); ++i) {
      threads.emplace_back([&, i] { work(tables, i, wrong[i]); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ((std::array<int, 4>{}), wrong);
    EXPECT_EQ(0U, tables.lists->size());
    EXPECT_EQ(0U, TypeParam::partsInterned(*tables.lists));
    EXPECT_EQ(0U, tables.values->size());
  }
  EXPECT_EQ(0U, TypeParam::Family::List::kivType().objects());
  EXPECT_EQ(0U, TypeParam::Family::ClassificationList::kivType().objects());
}

}  // namespace
}  // namespace Routing::Bgp
