#include "Dorn/DedupBuckets.h"

#include <new>
#include <utility>

#include "Kiv/Assert.h"
#include "Kiv/Type.h"

namespace Dorn {
namespace {

constinit Kiv::Type bucketType{"Dorn::DedupBucket"};

constexpr std::align_val_t bucketAlignment{alignof(DedupBucket)};

DedupBucket* bucketsNew(U32 count) {
  const std::size_t bytes = count * sizeof(DedupBucket);
  auto* const buckets = static_cast<DedupBucket*>(::operator new(bytes, bucketAlignment));
  bucketType.allocated(bytes);
  for (U32 i = 0; i < count; ++i) new (buckets + i) DedupBucket;
  return buckets;
}

void bucketsDelete(DedupBucket* buckets, U32 count) noexcept {
  if (!buckets) return;
  const std::size_t bytes = count * sizeof(DedupBucket);
  bucketType.freed(bytes);
  ::operator delete(buckets, bytes, bucketAlignment);
}

}  // namespace

DedupBuckets::~DedupBuckets() { bucketsDelete(buckets_, count_); }

void DedupBuckets::swap(DedupBuckets& other) noexcept {
  std::swap(buckets_, other.buckets_);
  std::swap(count_, other.count_);
  std::swap(size_, other.size_);
  std::swap(limit_, other.limit_);
}

void DedupBuckets::insert(U32 hash, DedupHandle* member) noexcept {
  KIV_ASSERT(DedupBucket::fits(member), "fits(member)", "Dorn/DedupBuckets");
  U32 at = home(hash);
  while (buckets_[at].freeSlots() == 0) {
    buckets_[at].passedInc();
    at = next(at);
  }
  buckets_[at].slotIs(DedupBucket::firstOf(buckets_[at].freeSlots()), hash, member);
  ++size_;
}

bool DedupBuckets::erase(U32 hash, const DedupHandle* member) noexcept {
  const Place found = place(hash, [member](const DedupHandle* other) { return other == member; });
  if (!found.member) return false;
  buckets_[found.bucket].slotDel(found.slot);
  for (U32 before = home(hash); before != found.bucket; before = next(before)) {
    buckets_[before].passedDec();
  }
  --size_;
  return true;
}

// Few buckets double, so that a small table seldom grows; many take little more than
// they need.
void DedupBuckets::grow() {
  const U32 count = count_ < 16 ? 2 * count_ + 1 : count_ + count_ / 4;
  DedupBuckets larger;
  larger.buckets_ = bucketsNew(count);
  larger.count_ = count;
  larger.limit_ = count * (DedupBucket::slots - 1);
  for (U32 at = 0; at < count_; ++at) {
    const DedupBucket& bucket = buckets_[at];
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (bucket.member(i)) larger.insert(bucket.hash(i), bucket.member(i));
    }
  }
  swap(larger);
}

}  // namespace Dorn
