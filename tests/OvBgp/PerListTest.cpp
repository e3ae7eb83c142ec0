// Answers that are kept by list.
#include "tools/bgp-communities/PerList.h"

#include <gtest/gtest.h>

#include "tests/tools/MrtBytes.h"
#include "tools/bgp-communities/CommunityTables.h"

namespace CommTool {
namespace {

class PerListTest : public testing::Test {
 protected:
  RouteCommunities listOf(U32 community) {
    const Bytes value = Bytes().u32(community);
    CommunityAttributes attributes;
    attributes[CommunityKind::standard] = value;
    return tables.intern(attributes);
  }
  U32 answer(const RouteCommunities& route) {
    return answers.of(*route.standard, [this](const auto& list) {
      ++made;
      return (*list.commVectorRawPtr())[0];
    });
  }

  const CommunityTables tables;
  PerList<U32> answers;
  U32 made = 0;
};

TEST_F(PerListTest, IsAskedOnceForEachList) {
  const RouteCommunities one = listOf(1);
  const RouteCommunities two = listOf(2);
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(answer(one), 1U);
    EXPECT_EQ(answer(two), 2U);
  }
  EXPECT_EQ(made, 2U);
  answers.clear();
  EXPECT_EQ(answer(one), 1U);
  EXPECT_EQ(made, 3U);
}

// Lists come and go, and their addresses with them; answers stay right and few.
TEST_F(PerListTest, ForgetsListsThatNobodyHolds) {
  const RouteCommunities kept = listOf(0);
  EXPECT_EQ(answer(kept), 0U);
  for (U32 community = 1; community < 50000; ++community) {
    ASSERT_EQ(answer(listOf(community)), community);
    ASSERT_LE(answers.size(), PerList<U32>::limitMin + 1);
  }
  EXPECT_EQ(answer(kept), 0U);
  EXPECT_EQ(made, 50000U);
  answers.clear();
  EXPECT_EQ(tables.lists(CommunityKind::standard), 1U);
}

TEST_F(PerListTest, KeepsNoLongText) {
  PerList<std::string> texts;
  const RouteCommunities one = listOf(1);
  const RouteCommunities two = listOf(2);
  const auto textOf = [&](const RouteCommunities& route, std::size_t size, char filler) {
    return texts.of(*route.standard, [&](const auto&) { return std::string(size, filler); });
  };
  constexpr std::size_t longest = PerList<std::string>::longText;
  EXPECT_EQ(textOf(one, longest + 1, 'a'), std::string(longest + 1, 'a'));
  EXPECT_EQ(texts.size(), 0U);
  EXPECT_EQ(textOf(two, longest, 'b'), std::string(longest, 'b'));
  EXPECT_EQ(textOf(two, 0, 'c'), std::string(longest, 'b'));
  EXPECT_EQ(textOf(one, 1, 'd'), "d");
  EXPECT_EQ(texts.size(), 2U);
}

}  // namespace
}  // namespace CommTool
