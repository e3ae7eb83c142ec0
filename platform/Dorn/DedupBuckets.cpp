#include "Dorn/DedupBuckets.h"

#include <memory>
#include <new>
#include <utility>

#include "Kiv/Type.h"

namespace Dorn {
namespace {

// Counts the arrays of buckets and their bytes for the memory report.
constinit Kiv::Type bucketType{"Dorn::DedupBucket"};

constexpr U32 smallTable = 2048;  // buckets; smaller tables have a lower load factor

// A pair of buckets is an aligned block of 128 bytes, which processors mostly fetch together.
constexpr std::align_val_t bucketAlignment{2 * alignof(DedupBucket)};

DedupBucket* bucketsNew(U32 count) {
  const std::size_t bytes = count * sizeof(DedupBucket);
  auto* const buckets = static_cast<DedupBucket*>(::operator new(bytes, bucketAlignment));
  bucketType.allocated(bytes);
  std::uninitialized_value_construct_n(buckets, count);
  return buckets;
}

void bucketsDelete(DedupBucket* buckets, U32 count) noexcept {
  if (count == 0) return;  // noBucket, which is not ours to free
  const std::size_t bytes = count * sizeof(DedupBucket);
  bucketType.freed(bytes);
  ::operator delete(buckets, bytes, bucketAlignment);
}

}  // namespace

constinit DedupBucket DedupBuckets::noBucket;

DedupBuckets::~DedupBuckets() { bucketsDelete(buckets_, count_); }

void DedupBuckets::swap(DedupBuckets& other) noexcept {
  std::swap(buckets_, other.buckets_);
  std::swap(count_, other.count_);
  std::swap(size_, other.size_);
  std::swap(limit_, other.limit_);
}

// The first bucket with a free slot in the probe sequence of a hash whose home bucket is full.
// Every full bucket before it counts the member that the caller stores there. Ends, since the
// load factor is below 1 and the sequence visits all buckets.
DedupBucket& DedupBuckets::overflowBucket(U32 hash) noexcept {
  U32 at = home(hash);
  for (U32 step = 0; buckets_[at].freeSlots() == 0; ++step) {
    buckets_[at].overflowInc(hash);
    at = next(step, at, hash);
  }
  return buckets_[at];
}

// Removes a member that is not in its home bucket, and decrements the counters on its way. The
// counters change only when the member has been found. The probe sequence can visit a bucket
// twice. insert() has then incremented its counter twice, and the second loop decrements it
// twice, so the counts stay balanced.
bool DedupBuckets::eraseElsewhere(U32 hash, const DedupHandle* member) noexcept {
  U32 at = home(hash);
  U32 steps = 0;
  do {
    if (!buckets_[at].overflowed(hash) || steps > count_) return false;
    at = next(steps++, at, hash);
  } while (!buckets_[at].erase(hash, member));
  at = home(hash);
  for (U32 step = 0; step < steps; ++step) {
    buckets_[at].overflowDec(hash);
    at = next(step, at, hash);
  }
  return true;
}

// A small array doubles, so that a small table seldom grows. A large one grows by a quarter,
// so that little of its memory is unused. Arrays up to some thousand buckets keep two slots of
// seven free instead of one: that costs little memory, and fewer members overflow.
//
// The members are inserted anew from the hash bits in their slots, so this starts all overflow
// counters again and reads no member. The caller holds the shard's lock.
void DedupBuckets::grow() {
  const U32 count = count_ < 16 ? 2 * count_ + 1 : count_ + count_ / 4;
  DedupBuckets larger;
  larger.buckets_ = bucketsNew(count);
  larger.count_ = count;
  for (U32 at = 0; at < count_; ++at) {
    const DedupBucket& bucket = buckets_[at];
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (bucket.member(i)) larger.insert(bucket.hash(i), bucket.member(i));
    }
  }
  larger.limit_ = count * (DedupBucket::slots - (count < smallTable ? 2 : 1));
  swap(larger);
}

}  // namespace Dorn
