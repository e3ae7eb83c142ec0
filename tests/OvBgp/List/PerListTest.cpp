#include "OvBgp/List/PerList.h"

#include <gtest/gtest.h>

#include <string>

#include "OvBgp/OvBgpCommunityList.h"

namespace Routing::Bgp {
namespace {

class PerListTest : public testing::Test {
 protected:
  CommList::PtrConst listOf(U32 community) const {
    const CommList::Ptr list = commListFactory();
    list->commIs(community);
    return list->dedup(table.ptr());
  }
  U32 answer(const CommList::PtrConst& list) {
    return answers.of(*list, [this](const auto& asked) {
      ++made;
      return (*asked.commVectorRawPtr())[0];
    });
  }

  const CommListDedupTable::Ptr table = commListDedupTableFactory();
  PerList<U32> answers;
  U32 made = 0;
};

TEST_F(PerListTest, IsAskedOnceForEachList) {
  const CommList::PtrConst one = listOf(1);
  const CommList::PtrConst two = listOf(2);
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(answer(one), 1U);
    EXPECT_EQ(answer(two), 2U);
  }
  EXPECT_EQ(made, 2U);
  answers.clear();
  EXPECT_EQ(answer(one), 1U);
  EXPECT_EQ(made, 3U);
}

// Lists are made and released, so that their addresses are reused. The cache must neither give
// the answer of another list nor keep all answers.
TEST_F(PerListTest, ForgetsListsThatNobodyHolds) {
  const CommList::PtrConst kept = listOf(0);
  EXPECT_EQ(answer(kept), 0U);
  for (U32 community = 1; community < 50000; ++community) {
    ASSERT_EQ(answer(listOf(community)), community);
    ASSERT_LE(answers.size(), PerList<U32>::limitMin + 1);
  }
  EXPECT_EQ(answer(kept), 0U);
  EXPECT_EQ(made, 50000U);
  answers.clear();
  EXPECT_EQ(table->size(), 1U);
}

TEST_F(PerListTest, KeepsNoLongText) {
  PerList<std::string> texts;
  const CommList::PtrConst one = listOf(1);
  const CommList::PtrConst two = listOf(2);
  const auto textOf = [&](const CommList::PtrConst& list, std::size_t size, char filler) {
    return texts.of(*list, [&](const auto&) { return std::string(size, filler); });
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
}  // namespace Routing::Bgp
