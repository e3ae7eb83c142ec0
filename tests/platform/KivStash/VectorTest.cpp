// Storage of KivStash::Vector: how it grows, what it allocates, and the two forms without storage
// of its own.
#include "KivStash/Vector.h"

#include <gtest/gtest.h>

#include <array>
#include <span>
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

struct VectorOwner {
  Words words;
  U32 behind[3] = {9, 9, 9};  // stands for the octets allocated behind the object
};

TEST(Vector, HasElementsInPlaceAndThenStaysAsItIs) {
  const U64 before = KivStash::arrayType<U32>().bytes();
  for (const U32 count : {0U, 1U, 2U, 4U}) {
    VectorOwner owner;
    const std::array<U32, 4> values{1, 2, 3, 4};
    owner.words.inPlaceIs(std::span(values).first(count));
    EXPECT_EQ(std::vector<U32>(values.begin(), values.begin() + count), contents(owner.words));
    EXPECT_EQ(count, owner.words.capacity());
    EXPECT_EQ(Words::inPlaceBytes(count), owner.words.storageBytes());
    owner.words.shrinkToFit();
    EXPECT_EQ(count, owner.words.size());
    EXPECT_EQ(9U, owner.behind[2]);
  }
  EXPECT_EQ(0U, Words::inPlaceBytes(sizeof(Words) / sizeof(U32) - 1));
  EXPECT_EQ(before, KivStash::arrayType<U32>().bytes());
  EXPECT_DEATH(
      {
        VectorOwner owner;
        owner.words.inPlaceIs(std::array<U32, 1>{0xFFFFFFFF});
        owner.words.append(2);
      },
      "!isInPlace\\(\\)");
}

TEST(Vector, HasElementsBehindItsOwnerAndThenStaysAsItIs) {
  const U64 before = KivStash::arrayType<U32>().bytes();
  std::array<U32, 4> behind{1, 2, 3, 4};
  for (const U32 count : {0U, 1U, 4U}) {
    Words words;
    EXPECT_FALSE(words.isAttached());
    words.attachedIs(std::span(behind).first(count));
    EXPECT_TRUE(words.isAttached());
    EXPECT_FALSE(words.isInPlace());
    EXPECT_EQ(std::vector<U32>(behind.begin(), behind.begin() + count), contents(words));
    EXPECT_EQ(count, words.capacity());
    EXPECT_EQ(count * sizeof(U32), words.storageBytes());
    words.shrinkToFit();
    words.reserve(count);
    EXPECT_EQ(count, words.size());
    EXPECT_DEATH(words.append(5), "isAttached");
  }
  EXPECT_EQ(before, KivStash::arrayType<U32>().bytes());
}

}  // namespace
