#include "Dorn/DedupBuckets.h"

#include <gtest/gtest.h>

namespace Dorn {
namespace {

// The address of an object that does not exist: buckets never read their members.
DedupHandle* memberAt(U64 number) {
  return reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(number * 8));
}
constexpr U32 anyTag = 0x200;  // every hash of a table has this bit

// The overflow counters share words with the slots: changing one must not change the other.
TEST(DedupBucket, MembersAndCountsShareWordsAndLeaveEachOtherAlone) {
  DedupBucket bucket;
  // A hash of class i.
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
    bucket.overflowInc(hashOf(i));
    ASSERT_EQ(DedupBucket::firstOf(bucket.freeSlots()), i);
    bucket.slotIs(i, hashOf(i), memberAt(i + 1));
    bucket.overflowInc(hashOf(i));
    expectMembers(i + 1);
  }
  EXPECT_EQ(bucket.freeSlots(), 0U);
  for (U32 i = DedupBucket::slots; i-- > 0;) {
    ASSERT_TRUE(bucket.overflowed(hashOf(i)));
    ASSERT_TRUE(bucket.erase(hashOf(i), memberAt(i + 1)));
    ASSERT_FALSE(bucket.erase(hashOf(i), memberAt(i + 1)));
    expectMembers(i);
  }
  for (U32 twice = 0; twice < 2; ++twice) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) bucket.overflowDec(hashOf(i));
  }
  for (U32 tag = 2; tag < 0x100; tag += 4) EXPECT_FALSE(bucket.overflowed(tag << 8));
}

// A counter is split between two words, and must carry and borrow between them.
TEST(DedupBucket, OverflowCountersReturnToZero) {
  DedupBucket bucket;
  for (U32 i = 0; i < 12; ++i) bucket.overflowInc(anyTag);
  for (U32 i = 0; i < 12; ++i) {
    EXPECT_TRUE(bucket.overflowed(anyTag));
    bucket.overflowDec(anyTag);
  }
  EXPECT_FALSE(bucket.overflowed(anyTag));
}

// A counter at its maximum stays there, so that no member is lost.
TEST(DedupBucket, OverflowCountersStickAtTheirMaximum) {
  DedupBucket bucket;
  for (U32 i = 0; i < 100; ++i) bucket.overflowInc(anyTag);
  bucket.slotIs(0, anyTag, memberAt(1));
  for (U32 i = 0; i < 100; ++i) bucket.overflowDec(anyTag);
  EXPECT_TRUE(bucket.overflowed(anyTag));
  EXPECT_EQ(bucket.member(0), memberAt(1));
}

}  // namespace
}  // namespace Dorn
