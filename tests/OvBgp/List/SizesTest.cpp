// What objects take, which is what millions of routes pay for: a member that makes
// one larger is noticed here.
#include <gtest/gtest.h>

#include <array>

#include "Dorn/DedupBuckets.h"
#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

#ifdef __x86_64__
// [sizes]
static_assert(sizeof(CommList::PtrConst) == 8);  // what a route keeps of a list
static_assert(sizeof(CommList) == 32);           // three members, and 4 octets a further one
static_assert(sizeof(LargeCommList) == 32);      // one member, and 12 octets a further one
static_assert(sizeof(ExtComm) == 24);            // colors and most others
static_assert(sizeof(ExtCommAsNumber) == 24);    // route targets
static_assert(sizeof(ExtCommIp6) == 40);         // with the 20 octets in it
static_assert(sizeof(ExtCommList) == 56);        // and 8 a member, and 80 at most
static_assert(sizeof(ExtCommClassificationList) == 32);  // and 8 a member
static_assert(sizeof(Dorn::DedupHandle) == 16);          // of each: count, state, table
static_assert(sizeof(Dorn::DedupBucket) == 64);          // seven members of a table
// [/sizes]
#endif

// The array of sub-lists is as long as the highest classification needs.
TEST(Sizes, StorageIsWhatTheMembersNeed) {
  const auto parser = bgpParseExtCommContainerSmFactory();
  const auto values = extCommDedupTableFactory(parser->extCommParser());
  const auto table = extCommListDedupTableFactory();
  const CommListDedupTable::Ptr standardTable = commListDedupTableFactory();
  const std::array<U8, 12> standard{0, 1, 0, 1, 0, 1, 0, 2, 0, 1, 0, 3};
  const std::array<U8, 24> extended{0, 2, 0, 1, 0, 0,  0, 1, 0, 2, 0, 1,
                                    0, 0, 0, 2, 3, 11, 0, 0, 0, 0, 0, 7};
  const auto plain = CommList::dedupAttributeValue(standardTable.ptr(), standard);
  const auto list = ExtCommList::dedupAttributeValue(table.ptr(), values.ptr(), extended);
  EXPECT_EQ(3U, plain->commVectorRawPtr()->capacity());
  EXPECT_EQ(3U, list->commVector().capacity());
  EXPECT_EQ(9U, list->classificationListVector().capacity());
  EXPECT_TRUE(list->commVector().isAttached());
  const auto targets = list->classificationList(extCommClassificationRouteTarget);
  ASSERT_TRUE(targets);
  EXPECT_EQ(2U, targets->commVector().capacity());
}

}  // namespace
