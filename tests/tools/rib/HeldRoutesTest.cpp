// Tests of the routes that are kept: identity, replacement and release of lists.
#include "tools/bgp-communities/rib/HeldRoutes.h"

#include <gtest/gtest.h>

#include "tests/tools/MrtBytes.h"
#include "tools/bgp-communities/rib/RouteKey.h"
#include "tools/bgp-communities/rib/RouteTable.h"

namespace CommTool {
namespace {

Nlri nlri(U8 octet, std::optional<U32> pathId = {}) {
  Nlri made;
  made.prefix.network.octets[0] = octet;
  made.prefix.length = 8;
  made.pathId = pathId;
  return made;
}

TEST(RouteKey, TellsApartAllThatMakesARoute) {
  Nlri other6 = nlri(10);
  other6.prefix.network.family = Family::ipv6;
  Nlri multicast = nlri(10);
  multicast.prefix.multicast = true;
  Nlri longer = nlri(10);
  longer.prefix.length = 9;
  RouteTable table;
  U32 count = 0;
  for (const Nlri& route :
       {nlri(10), nlri(11), nlri(10, 0), nlri(10, 1), other6, multicast, longer}) {
    table.insertOrAssign(RouteKey(0, route), {});
    table.insertOrAssign(RouteKey(1, route), {});
    count += 2;
  }
  EXPECT_EQ(table.size(), count);
}

class HeldRoutesTest : public testing::Test {
 protected:
  RouteCommunities add(RouteAction action, const std::vector<Nlri>& routes,
                       const Bytes& value = {}) {
    RouteBatch batch{testSeconds, action, peer, {}, routes};
    if (!value.empty()) {
      batch.communities[CommunityKind::standard] = value;
    }
    RouteCommunities communities = held.tables().intern(batch.communities);
    held.add(batch, communities);
    return communities;
  }
  U32 lists() const { return held.tables().lists(CommunityKind::standard); }

  Peer peer;
  HeldRoutes held;
  const Bytes one = Bytes().u32(0x10001).u32(0x10002);
  const Bytes oneOtherwise = Bytes().u32(0x10002).u32(0x10001).u32(0x10002);
  const Bytes two = Bytes().u32(0x20002);
};

TEST_F(HeldRoutesTest, SharesListsAndDropsThemWithTheLastRoute) {
  EXPECT_EQ(add(RouteAction::announce, {nlri(1), nlri(2)}, one).standard,
            add(RouteAction::tableEntry, {nlri(3)}, oneOtherwise).standard);
  EXPECT_EQ(lists(), 1U);
  add(RouteAction::announce, {nlri(1)}, two);
  EXPECT_EQ(lists(), 2U);
  add(RouteAction::withdraw, {nlri(2), nlri(3), nlri(200)});
  EXPECT_EQ(lists(), 1U);
  add(RouteAction::announce, {nlri(1)});  // replaced by a route without the attribute
  EXPECT_EQ(lists(), 0U);
  EXPECT_EQ(held.routes().size(), 1U);
  EXPECT_EQ(held.counts().announced, 4U);
  EXPECT_EQ(held.counts().withdrawn, 3U);
  EXPECT_EQ(held.counts().tableEntries, 1U);
}

TEST_F(HeldRoutesTest, KeepsPeersApart) {
  add(RouteAction::announce, {nlri(1)}, one);
  peer.local = true;
  add(RouteAction::announce, {nlri(1)}, one);
  peer.as = 9;
  add(RouteAction::withdraw, {nlri(1)});
  EXPECT_EQ(held.routes().size(), 2U);
}

TEST_F(HeldRoutesTest, DropsWithoutCounting) {
  add(RouteAction::announce, {nlri(1), nlri(2)}, one);
  const std::vector<Nlri> routes{nlri(1)};
  held.drop({testSeconds, RouteAction::announce, peer, {}, routes});
  EXPECT_EQ(held.routes().size(), 1U);
  EXPECT_EQ(held.counts().announced, 2U);
  EXPECT_EQ(held.counts().withdrawn, 0U);
}

}  // namespace
}  // namespace CommTool
