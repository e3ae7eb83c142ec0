#include "Dorn/DedupBuckets.h"

#include <new>
#include <utility>

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
  for (U32 at = home(hash);; at = next(at)) {
    DedupBucket& bucket = buckets_[at];
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (bucket.member[i]) continue;
      bucket.hash[i] = hash;
      bucket.member[i] = member;
      ++size_;
      return;
    }
    ++bucket.passed;
  }
}

bool DedupBuckets::locate(U32 hash, const DedupHandle* member, U32& at, U32& slot) const noexcept {
  at = home(hash);
  for (U32 left = size_ == 0 ? 0 : count_; left != 0; --left, at = next(at)) {
    for (slot = 0; slot < DedupBucket::slots; ++slot) {
      if (buckets_[at].member[slot] == member) return true;
    }
    if (buckets_[at].passed == 0) break;
  }
  return false;
}

bool DedupBuckets::erase(U32 hash, const DedupHandle* member) noexcept {
  U32 at = 0;
  U32 slot = 0;
  if (!locate(hash, member, at, slot)) return false;
  buckets_[at].hash[slot] = 0;
  buckets_[at].member[slot] = nullptr;
  for (U32 before = home(hash); before != at; before = next(before)) --buckets_[before].passed;
  --size_;
  return true;
}

void DedupBuckets::grow() {
  DedupBuckets larger;
  larger.buckets_ = bucketsNew(count_ + count_ / 2 + 1);
  larger.count_ = count_ + count_ / 2 + 1;
  larger.limit_ = static_cast<U32>(U64{larger.count_} * DedupBucket::slots * 6 / 7);
  for (U32 at = 0; at < count_; ++at) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (buckets_[at].member[i]) larger.insert(buckets_[at].hash[i], buckets_[at].member[i]);
    }
  }
  swap(larger);
}

}  // namespace Dorn
