// The properties that only IPv6 lists have. ExtCommListContractTest.cpp tests the rest.
#include "tests/OvBgp/List/ExtCommListKit.h"

namespace Routing::Bgp {
namespace {

using ExtCommIp6ListTest = ExtCommListFixture<ExtCommIp6Kind>;

TEST_F(ExtCommIp6ListTest, StringFormIsThePolicyTextsInOrder) {
  EXPECT_EQ("", intern({})->commsStringForm());
  EXPECT_EQ("100:::0 200:::0", intern({2, 1})->commsStringForm());
}

// The constructor has made both hash tables; making them anew would lose their members.
TEST_F(ExtCommIp6ListTest, TableIsInitializedOnce) {
  const auto subLists = table_->extCommClassificationListDedupTable();
  const auto list = intern({2, 1});
  table_->handleInitialized();
  EXPECT_EQ(subLists, table_->extCommClassificationListDedupTable());
  EXPECT_EQ(list, intern({1, 2}));
}

TEST_F(ExtCommIp6ListTest, BeforeSortingNothingIsLookedUpOrCounted) {
  const auto list = build({3, 2});
  EXPECT_EQ("", list->serialize(false));
  EXPECT_DEATH((void)list->serialize(true), "commVectorSorted\\(\\)");
  EXPECT_DEATH((void)list->comm(ExtCommIp6Kind::content(2)), "commVectorSorted");
  const auto part = extCommIp6ClassificationListFactory(extCommClassificationColor);
  EXPECT_DEATH((void)part->comm(ExtCommIp6Kind::content(2)), "commVectorSorted");
}

}  // namespace
}  // namespace Routing::Bgp
