#include "KivStash/Vector.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace {

using Words = KivStash::Vector<U32>;

std::vector<U32> contents(const Words& words) { return {words.begin(), words.end()}; }

TEST(Vector, GrowsFromNothingToOneAndThenDoubles) {
  Words words;
  EXPECT_EQ(0U, words.capacity());
  std::vector<U32> capacities;
  std::vector<U32> expected;
  for (U32 i = 0; i < 9; ++i) {
    words.append(i);
    expected.push_back(i);
    capacities.push_back(words.capacity());
  }
  EXPECT_EQ((std::vector<U32>{1, 2, 4, 4, 8, 8, 8, 8, 16}), capacities);
  EXPECT_EQ(expected, contents(words));
  static_assert(Words::maxSize == 0x3FFFFFFF);
}

TEST(Vector, ReservesExactlyAndNeverShrinks) {
  Words words;
  words.append(5);
  words.reserve(6);
  EXPECT_EQ(6U, words.capacity());
  EXPECT_EQ(std::vector<U32>{5}, contents(words));
  words.reserve(3);
  EXPECT_EQ(6U, words.capacity());
  EXPECT_THROW(words.reserve(Words::maxSize + 1), std::length_error);
  EXPECT_EQ(6U, words.capacity());
}

TEST(Vector, GivesBackWhatItDoesNotNeed) {
  const U64 before = KivStash::arrayType<U32>().bytes();
  {
    Words words;
    words.assign(std::array<U32, 3>{7, 8, 9});
    EXPECT_EQ(3U, words.capacity());
    words.truncate(1);
    EXPECT_EQ(3U, words.capacity());
    words.shrinkToFit();
    EXPECT_EQ(before + 4, KivStash::arrayType<U32>().bytes());
    EXPECT_EQ(std::vector<U32>{7}, contents(words));
    words.clear();
    words.shrinkToFit();
    EXPECT_EQ(0U, words.capacity());
    words.assign({});
    EXPECT_TRUE(words.empty());
    words.append(1);
  }
  EXPECT_EQ(before, KivStash::arrayType<U32>().bytes());
}

}  // namespace
