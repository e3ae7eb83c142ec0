#include "Dorn/DedupBuckets.h"

#include <gtest/gtest.h>

namespace Dorn {
namespace {

// Addresses of objects that nobody looks at.
DedupHandle* memberAt(U64 number) {
  return reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(number * 8));
}
constexpr U32 anyTag = 0x200;  // hashes of tables have this bit

// Who passed is counted in the words of the slots, by classes of hashes.
TEST(DedupBucket, MembersAndCountsShareWordsAndLeaveEachOtherAlone) {
  DedupBucket bucket;
  // Each of another class.
  const auto hashOf = [](U32 i) {
    return i * 0x01230000 | (i * 0x40 + 6) / DedupBucket::slots << 10 | anyTag;
  };
  const auto expectMembers = [&](U32 count) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      ASSERT_EQ(bucket.member(i), i < count ? memberAt(i + 1) : nullptr);
      if (i < count) {
        ASSERT_EQ(bucket.hash(i), hashOf(i));
      }
    }
  };
  for (U32 i = 0; i < DedupBucket::slots; ++i) {
    bucket.passedInc(hashOf(i));
    ASSERT_EQ(DedupBucket::firstOf(bucket.freeSlots()), i);
    bucket.slotIs(i, hashOf(i), memberAt(i + 1));
    bucket.passedInc(hashOf(i));
    expectMembers(i + 1);
  }
  EXPECT_EQ(bucket.freeSlots(), 0U);
  for (U32 i = DedupBucket::slots; i-- > 0;) {
    ASSERT_TRUE(bucket.passed(hashOf(i)));
    ASSERT_TRUE(bucket.erase(hashOf(i), memberAt(i + 1)));
    ASSERT_FALSE(bucket.erase(hashOf(i), memberAt(i + 1)));
    expectMembers(i);
  }
  for (U32 twice = 0; twice < 2; ++twice) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) bucket.passedDec(hashOf(i));
  }
  for (U32 tag = 2; tag < 0x100; tag += 4) EXPECT_FALSE(bucket.passed(tag << 8));
}

// A count stands in two places, and goes back through both.
TEST(DedupBucket, AllWhoPassedMayComeBack) {
  DedupBucket bucket;
  for (U32 i = 0; i < 12; ++i) bucket.passedInc(anyTag);
  for (U32 i = 0; i < 12; ++i) {
    EXPECT_TRUE(bucket.passed(anyTag));
    bucket.passedDec(anyTag);
  }
  EXPECT_FALSE(bucket.passed(anyTag));
}

// Once more have passed than are counted, the bucket says so for good.
TEST(DedupBucket, ManyWhoPassedAreNotForgotten) {
  DedupBucket bucket;
  for (U32 i = 0; i < 100; ++i) bucket.passedInc(anyTag);
  bucket.slotIs(0, anyTag, memberAt(1));
  for (U32 i = 0; i < 100; ++i) bucket.passedDec(anyTag);
  EXPECT_TRUE(bucket.passed(anyTag));
  EXPECT_EQ(bucket.member(0), memberAt(1));
}

}  // namespace
}  // namespace Dorn
