#include "Dorn/DedupBuckets.h"

#include <memory>
#include <new>
#include <utility>

#include "Kiv/Type.h"

namespace Dorn {
namespace {

constinit Kiv::Type bucketType{"Dorn::DedupBucket"};

constexpr U32 smallTable = 2048;  // buckets

// Pairs of buckets, of 128 octets, are what caches mostly fetch together.
constexpr std::align_val_t bucketAlignment{2 * alignof(DedupBucket)};

DedupBucket* bucketsNew(U32 count) {
  const std::size_t bytes = count * sizeof(DedupBucket);
  auto* const buckets = static_cast<DedupBucket*>(::operator new(bytes, bucketAlignment));
  bucketType.allocated(bytes);
  std::uninitialized_value_construct_n(buckets, count);
  return buckets;
}

void bucketsDelete(DedupBucket* buckets, U32 count) noexcept {
  if (count == 0) return;
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

DedupBucket& DedupBuckets::roomElsewhere(U32 hash) noexcept {
  U32 at = home(hash);
  for (U32 step = 0; buckets_[at].freeSlots() == 0; ++step) {
    buckets_[at].passedInc(hash);
    at = after(step, at, hash);
  }
  return buckets_[at];
}

// A bucket that is passed twice is told twice, by who comes as by who goes.
bool DedupBuckets::eraseElsewhere(U32 hash, const DedupHandle* member) noexcept {
  U32 at = home(hash);
  U32 steps = 0;
  do {
    if (!buckets_[at].passed(hash) || steps > count_) return false;
    at = after(steps++, at, hash);
  } while (!buckets_[at].erase(hash, member));
  at = home(hash);
  for (U32 step = 0; step < steps; ++step) {
    buckets_[at].passedDec(hash);
    at = after(step, at, hash);
  }
  return true;
}

// Few buckets double, so that a small table seldom grows; many take little more than
// they need.  Those of a table of some thousand keep more of it free, as it costs
// nothing and fewer members are passed on.
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
