// The storage of one shard of an interning table: an open-addressing hash set of
// handles, without lock or ownership.
//
// A bucket is one cache line.  It keeps each member's hash beside its pointer, so
// a probe touches an object only on an equal hash and growth touches none.  A
// member that finds its home bucket full goes to the next one with room; every
// bucket that it passed counts it, so that a probe goes on exactly while somebody
// went past, and removal needs no markers and moves nobody.
//
// Cost: a hit or miss usually touches one bucket, 12.8 bytes a slot on 64-bit
// builds, filled to six sevenths before it grows by half.
#ifndef DORN_DEDUPBUCKETS_H
#define DORN_DEDUPBUCKETS_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstddef>

#include "Kiv/Types.h"

namespace Dorn {

class DedupHandle;

// Hashes are never 0: that marks a free slot.
struct alignas(64) DedupBucket {
  static constexpr U32 slots = (64 - sizeof(U32)) / (sizeof(U32) + sizeof(void*));
  static constexpr U32 vectorSlots = 4;
  static_assert(slots >= vectorSlots);

  // Bit i is set when slot i holds this hash; without a branch, as which slot it
  // is cannot be predicted.
  U32 matches(U32 wanted) const noexcept {
    U32 found = 0;
    U32 i = 0;
#ifdef __SSE2__
    const __m128i equal = _mm_cmpeq_epi32(_mm_load_si128(reinterpret_cast<const __m128i*>(hash)),
                                          _mm_set1_epi32(static_cast<int>(wanted)));
    found = static_cast<U32>(_mm_movemask_ps(_mm_castsi128_ps(equal)));
    i = vectorSlots;
#endif
    for (; i < slots; ++i) found |= static_cast<U32>(hash[i] == wanted) << i;
    return found;
  }

  U32 hash[slots] = {};
  U32 passed = 0;  // members that this bucket was too full for
  DedupHandle* member[slots] = {};
};
static_assert(sizeof(DedupBucket) == 64);

class DedupBuckets {
 public:
  DedupBuckets() noexcept = default;
  DedupBuckets(DedupBuckets&& other) noexcept { swap(other); }
  DedupBuckets(const DedupBuckets&) = delete;
  DedupBuckets& operator=(const DedupBuckets&) = delete;
  ~DedupBuckets();

  U32 size() const noexcept { return size_; }

  // The member of this hash that `isWanted(DedupHandle*)` accepts, or null.
  template <class IsWanted>
  DedupHandle* find(U32 hash, const IsWanted& isWanted) const;

  // Makes room for one more member; the only operation that allocates.  Throws
  // std::bad_alloc and leaves everything as it was.
  void reserveOne() {
    if (size_ >= limit_) grow();
  }
  // Requires: reserveOne() since the last insertion; `member` is not there yet.
  void insert(U32 hash, DedupHandle* member) noexcept;
  // Whether `member`, of this hash, was there.
  bool erase(U32 hash, const DedupHandle* member) noexcept;

  template <class Visit>
  void forEach(const Visit& visit) const;

  // Places for members, and the member at one, or null: for walks with pauses.
  // Members move only when there come to be more places.
  U32 places() const noexcept { return count_ * DedupBucket::slots; }
  DedupHandle* memberAt(U32 place) const noexcept {
    return buckets_[place / DedupBucket::slots].member[place % DedupBucket::slots];
  }

  void swap(DedupBuckets& other) noexcept;

 private:
  void grow();
  // The bucket and slot of `member`; false if it is not there.
  bool locate(U32 hash, const DedupHandle* member, U32& at, U32& slot) const noexcept;
  // Any number of buckets will do: the high half of the product is below it.
  U32 home(U32 hash) const noexcept { return static_cast<U32>(U64{hash} * count_ >> 32); }
  U32 next(U32 at) const noexcept { return at + 1 == count_ ? 0 : at + 1; }

  DedupBucket* buckets_ = nullptr;
  U32 count_ = 0;
  U32 size_ = 0;
  U32 limit_ = 0;  // members to hold before the next growth
};

template <class IsWanted>
DedupHandle* DedupBuckets::find(U32 hash, const IsWanted& isWanted) const {
  // Bounded, as after many removals every bucket may have been passed by somebody.
  U32 at = home(hash);
  for (U32 left = size_ == 0 ? 0 : count_; left != 0; --left, at = next(at)) {
    const DedupBucket& bucket = buckets_[at];
    for (U32 found = bucket.matches(hash); found != 0; found &= found - 1) {
      DedupHandle* const member = bucket.member[__builtin_ctz(found)];
      if (isWanted(member)) return member;
    }
    if (bucket.passed == 0) break;
  }
  return nullptr;
}

template <class Visit>
void DedupBuckets::forEach(const Visit& visit) const {
  for (U32 at = 0; at < count_; ++at) {
    for (DedupHandle* const member : buckets_[at].member) {
      if (member) visit(member);
    }
  }
}

}  // namespace Dorn

#endif
