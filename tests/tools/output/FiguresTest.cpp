// Compares the statistics of routes with counts made by hand.
#include "tools/bgp-communities/output/Figures.h"

#include <gtest/gtest.h>

#include "tests/tools/MrtBytes.h"

namespace CommTool {
namespace {

using namespace Routing::Bgp;

class FiguresTest : public testing::Test {
 protected:
  // Adds `routes` routes with these attributes.
  void hold(U8 routes, const Bytes& standard, const Bytes& large, const Bytes& extended,
            const Bytes& ip6) {
    std::vector<Nlri> nlris(routes);
    for (Nlri& nlri : nlris) {
      nlri.prefix.network.octets[0] = next_++;
      nlri.prefix.length = 8;
    }
    RouteBatch batch{testSeconds, RouteAction::announce, {}, {}, nlris};
    const Bytes* const values[] = {&standard, &large, &extended, &ip6};
    for (const CommunityKindRow& row : communityKindRows) {
      const Bytes& value = *values[indexOf(row.kind)];
      if (!value.empty()) batch.communities[row.kind] = value;
    }
    held.add(batch, held.tables().intern(batch.communities));
  }

  void expectFigures(const ObjectFigures& figures, U64 occurrences, U64 unique,
                     U64 references) const {
    EXPECT_EQ(figures.occurrences, occurrences);
    EXPECT_EQ(figures.unique, unique);
    EXPECT_EQ(figures.references, references);
  }

  HeldRoutes held;

 private:
  U8 next_ = 0;
};

Bytes routeTarget(U32 number) { return Bytes().u32(0x00020001).u32(number); }
Bytes color(U32 number) { return Bytes().u32(0x030B0000).u32(number); }
Bytes ip6(U16 number) { return Bytes{0x00, 0x02, 0x20, 0x01}.fill(14, 0).u16(number); }

TEST_F(FiguresTest, CountPlainValues) {
  const Bytes one = Bytes().u32(1).u32(2);
  hold(3, one, {}, {}, {});
  hold(1, Bytes().u32(3).add(one), {}, {}, {});
  hold(2, {}, Bytes().u32(1).u32(2).u32(3), {}, {});
  hold(1, {}, {}, {}, {});
  const HeldFigures figures = figuresOf(held);
  EXPECT_EQ(figures.routes, 7U);
  const KindFigures& standard = figures.of(CommunityKind::standard);
  expectFigures(standard.lists, 4, 2, 4);
  expectFigures(standard.values, 9, 3, 5);
  expectFigures(standard.subLists, 0, 0, 0);
  const U64 ofTwo = sizeof(CommList) + KivStash::Vector<U32>::inPlaceBytes(2);
  const U64 ofThree = sizeof(CommList) + KivStash::Vector<U32>::inPlaceBytes(3);
  EXPECT_EQ(standard.bytes(), ofTwo + ofThree);
  EXPECT_EQ(standard.bytesUnshared(), 3 * ofTwo + ofThree);
  const KindFigures& large = figures.of(CommunityKind::large);
  expectFigures(large.lists, 2, 1, 2);
  expectFigures(large.values, 2, 1, 1);
  EXPECT_EQ(large.bytesUnshared(), 2 * sizeof(LargeCommList));
  EXPECT_GT(figures.bytes, standard.bytes() + large.bytes());  // tables, too
}

TEST_F(FiguresTest, NameTheListsInMostUse) {
  hold(2, Bytes().u32(2), {}, color(1), {});
  hold(3, Bytes().u32(5).u32(6).u32(7), {}, {}, {});
  hold(2, Bytes().u32(1).u32(9), {}, {}, {});
  const HeldFigures figures = figuresOf(held, 3);
  ASSERT_EQ(figures.top.size(), 3U);
  EXPECT_EQ(figures.top[0].text, "0:5 0:6 0:7");
  EXPECT_EQ(figures.top[0].references, 3U);
  EXPECT_EQ(figures.top[1].text, "0:1 0:9");  // as often as the next, and before it
  EXPECT_EQ(figures.top[2].text, "0:2");
  EXPECT_EQ(figuresOf(held, 4).top[3].kind, CommunityKind::extended);
  EXPECT_EQ(figuresOf(held, 9).top.size(), 4U);
  EXPECT_TRUE(figuresOf(held).top.empty());
  const auto& lengths = figures.of(CommunityKind::standard).lengths;
  EXPECT_EQ(lengths, (std::array<U64, lengthClasses>{1, 1, 1}));
}

TEST(LengthClasses, GrowByPowersOfTwo) {
  const std::size_t classes[] = {0, 1, 2, 2, 3, 3, 3, 3, 4};
  for (U64 members = 1; members <= 9; ++members) {
    EXPECT_EQ(lengthClassOf(members), classes[members - 1]) << members;
  }
  EXPECT_EQ(lengthClassOf(64), lengthClasses - 2);
  EXPECT_EQ(lengthClassOf(65), lengthClasses - 1);
  EXPECT_EQ(lengthClassOf(16383), lengthClasses - 1);
}

TEST_F(FiguresTest, CountValuesAndSubListsThatListsShare) {
  hold(2, {}, {}, routeTarget(1).add(routeTarget(2)).add(color(7)), {});
  hold(1, {}, {}, routeTarget(2).add(routeTarget(1)).add(color(8)), {});
  hold(3, {}, {}, {}, ip6(1).add(ip6(2)));
  const HeldFigures figures = figuresOf(held);
  const KindFigures& extended = figures.of(CommunityKind::extended);
  expectFigures(extended.lists, 3, 2, 3);
  expectFigures(extended.subLists, 6, 3, 4);
  expectFigures(extended.values, 9, 4, 6);
  const U64 colorBytes = sizeof(ExtComm);
  EXPECT_GE(extended.values.bytes, 4 * colorBytes);
  EXPECT_GT(extended.bytesUnshared(), extended.bytes());
  const KindFigures& ip6Extended = figures.of(CommunityKind::ip6Extended);
  expectFigures(ip6Extended.lists, 3, 1, 3);
  expectFigures(ip6Extended.subLists, 3, 1, 1);
  expectFigures(ip6Extended.values, 6, 2, 2);
  EXPECT_EQ(ip6Extended.values.bytesUnshared, 3 * ip6Extended.values.bytes);
}

}  // namespace
}  // namespace CommTool
