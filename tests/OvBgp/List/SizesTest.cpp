// The sizes of objects. A daemon has millions of routes, so each octet counts. A new data member
// that enlarges an object fails here.
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
static_assert(sizeof(CommList::PtrConst) == 8);          // the pointer in each route
static_assert(sizeof(CommList) == 32);                   // with 3 members; each further one 4
static_assert(sizeof(LargeCommList) == 32);              // with 1 member; each further one 12
static_assert(sizeof(ExtComm) == 24);                    // colors and most others
static_assert(sizeof(ExtCommAsNumber) == 24);            // route targets
static_assert(sizeof(ExtCommIp6) == 40);                 // including the 20 octets of the community
static_assert(sizeof(ExtCommList) == 56);                // each member 8; sub-lists at most 80
static_assert(sizeof(ExtCommClassificationList) == 32);  // each member 8
static_assert(sizeof(Dorn::DedupHandle) == 16);          // in each: vtable, count, state, table
static_assert(sizeof(Dorn::DedupBucket) == 64);          // of a table; for seven members
// [/sizes]
#endif

// No array has spare room. That of the sub-lists ends at the highest classification present.
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
