// Verification must notice every list that differs from its attribute.
#include "tools/bgp-communities/rib/Verification.h"

#include <gtest/gtest.h>

#include "tests/tools/MrtBytes.h"
#include "tools/bgp-communities/rib/CommunityTables.h"

namespace CommTool {
namespace {

class VerificationTest : public testing::Test {
 protected:
  VerificationTest() {
    received[CommunityKind::standard] = standard;
    received[CommunityKind::large] = large;
    received[CommunityKind::extended] = extended;
    received[CommunityKind::ip6Extended] = ip6;
  }

  std::string findings() const {
    Problems problems;
    verify(received, lists, problems);
    return problems.text();
  }

  const Bytes standard = Bytes().u32(2).u32(1).u32(2);
  const Bytes large = Bytes().u32(9).u32(2).u32(3).u32(1).u32(2).u32(3);
  // Non-transitive communities: two link bandwidths, one of which is invalid.
  const Bytes extended = Bytes()
                             .u32(0x40040001)
                             .u32(0x7FC00000)
                             .u32(0x40040002)
                             .u32(0x3F800000)
                             .u32(0x00020001)
                             .u32(5);
  const Bytes ip6 = Bytes{0x40, 0x02}.fill(18, 7).add(Bytes{0x00, 0x03}.fill(18, 9));
  const CommunityTables tables;
  CommunityAttributes received;
  RouteCommunities lists;
};

TEST_F(VerificationTest, OrderAndRepeatsAreNoDifference) {
  lists = tables.intern(received);
  EXPECT_EQ(findings(), "");
  received = {};
  lists = {};
  EXPECT_EQ(findings(), "");
}

// Long enough for the flag Extended Length.
TEST_F(VerificationTest, ReadsExtendedLength) {
  Bytes many;
  for (U32 i = 0; i < 16383; ++i) many.u32(i);
  received[CommunityKind::standard] = many;
  lists = tables.intern(received);
  EXPECT_EQ(findings(), "");
}

TEST_F(VerificationTest, FindsWhatDiffers) {
  for (const CommunityKindRow& row : communityKindRows) {
    CommunityAttributes otherwise = received;
    const Bytes changed = Bytes().fill(otherwise[row.kind]->size(), 0);
    otherwise[row.kind] = changed;
    lists = tables.intern(otherwise);
    EXPECT_EQ(findings().find(std::string(row.attribute) + ": "), 0U) << findings();
  }
}

TEST_F(VerificationTest, FindsAListThatIsNotThere) {
  lists = tables.intern(received);
  lists.large = nullptr;
  EXPECT_EQ(findings(), "LARGE_COMMUNITY without a list");
  lists = tables.intern(received);
  received[CommunityKind::large].reset();
  EXPECT_EQ(findings(), "list without LARGE_COMMUNITY");
}

}  // namespace
}  // namespace CommTool
