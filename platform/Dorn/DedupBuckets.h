// The storage of one shard of an interning table: an open-addressing hash set of
// handles, without lock or ownership.
//
// A bucket is one cache line of seven slots.  It keeps 24 bits of each member's hash,
// eight of them (the tag) where one comparison finds them, the others in what an
// address leaves free of its word: so a probe touches an object only if all are equal,
// and growth touches none.  A member that finds its home bucket full goes to the next
// one with room; every bucket that it passed counts it, so that a probe goes on
// exactly while somebody went past, and removal needs no markers and moves nobody.
//
// Cost: a hit or miss usually touches one bucket, 9.2 bytes a slot, filled to six
// sevenths before it grows by a quarter.  Members stand in the order of their hashes,
// in old buckets as in new ones, so growth reads and writes memory from end to end.
#ifndef DORN_DEDUPBUCKETS_H
#define DORN_DEDUPBUCKETS_H

#include <cstddef>

#include "Kiv/Inline.h"
#include "Kiv/Types.h"

namespace Dorn {

class DedupHandle;

// Of a hash the upper 24 bits count.  Bit 15 is always set, so that the tag, bits 8
// to 15, is not that of a free slot, which is 0.
class alignas(64) DedupBucket {
 public:
  static constexpr U32 slots = 7;
  static constexpr U32 hashBits = 24;

  // A set of slots: bit 8 i + 7 stands for slot i.
  using Slots = U64;
  static U32 firstOf(Slots set) noexcept { return static_cast<U32>(__builtin_ctzll(set)) / 8; }

  // The slots that have this hash's tag, and maybe some more; without a branch, as
  // which slot it is cannot be predicted.
  Slots candidates(U32 hash) const noexcept { return zeros(tags_ ^ (hash >> 8 & 0xFF) * ones); }
  // The free slots, the first of which is sure to be one; if there is any.
  Slots freeSlots() const noexcept { return zeros(tags_); }

  // The member of this hash that `isWanted(DedupHandle*)` accepts, or null.
  template <class IsWanted>
  KIV_INLINE DedupHandle* find(U32 hash, const IsWanted& isWanted) const {
    for (Slots found = candidates(hash); found != 0; found &= found - 1) {
      // Less the hash that is asked for, a candidate's word is its address or too large.
      const U64 word = words_[firstOf(found)] ^ U64 { hash >> 16 } << addressBits;
      if (word >> addressBits != 0) continue;
      auto* const member = reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(word));
      if (isWanted(member)) return member;
    }
    return nullptr;
  }
  // The member in the slot; null if it is free.
  DedupHandle* member(U32 i) const noexcept {
    return reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(words_[i] & addressMask));
  }
  // As much of the hash of slot `i` as counts.
  U32 hash(U32 i) const noexcept {
    return static_cast<U32>(words_[i] >> addressBits) << 16 |
           static_cast<U32>(tags_ >> 8 * i & 0xFF) << 8;
  }

  void slotIs(U32 i, U32 hash, DedupHandle* member) noexcept {
    tags_ |= U64{hash >> 8 & 0xFF} << 8 * i;
    words_[i] = U64{hash >> 16} << addressBits | reinterpret_cast<std::uintptr_t>(member);
  }
  // Whether `member`, of this hash, was there.
  bool erase(U32 hash, const DedupHandle* member) noexcept {
    for (Slots found = candidates(hash); found != 0; found &= found - 1) {
      const U32 i = firstOf(found);
      if (this->member(i) != member) continue;
      tags_ &= ~(U64{0xFF} << 8 * i);
      words_[i] = 0;
      return true;
    }
    return false;
  }

  // Whether there may be members that this bucket was too full for.
  bool passed() const noexcept { return tags_ >> passedShift != 0; }
  void passedInc() noexcept {
    if (tags_ >> passedShift != passedMany) tags_ += U64{1} << passedShift;
  }
  void passedDec() noexcept {
    if (tags_ >> passedShift != passedMany) tags_ -= U64{1} << passedShift;
  }

  // Whether there is room for the address beside the hash.
  static bool fits(const DedupHandle* member) noexcept {
    return (U64{reinterpret_cast<std::uintptr_t>(member)} & ~addressMask) == 0;
  }

 private:
  static constexpr U64 ones = 0x01010101010101;
  static constexpr U32 passedShift = 56;
  static constexpr U64 passedMany = 0xFF;  // no more are counted, nor fewer
  // What a program of 64 bits gets from its system unless it asks for more.
  static constexpr U32 addressBits = 48;
  static constexpr U64 addressMask = (U64{1} << addressBits) - 1;

  // The octets, of seven, that are 0; behind the first one, some that are 1, too.
  static Slots zeros(U64 octets) noexcept { return (octets - ones) & ~octets & ones << 7; }

  U64 tags_ = 0;  // an octet a slot, and how many members passed
  U64 words_[slots] = {};
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

  // Says that members of this hash will be asked for soon.  Inlined, as GCC leaves out
  // calls of what does nothing but prefetch.
  KIV_INLINE void prefetch(U32 hash) const noexcept { __builtin_prefetch(buckets_ + home(hash)); }
  // The member of this hash that `isWanted(DedupHandle*)` accepts, or null.
  template <class IsWanted>
  KIV_INLINE DedupHandle* find(U32 hash, const IsWanted& isWanted) const {
    U32 at = home(hash);
    // Bounded, as after many removals every bucket may have been passed by somebody.
    for (U32 left = count_; left != 0; --left, at = next(at)) {
      if (DedupHandle* const member = buckets_[at].find(hash, isWanted)) return member;
      if (!buckets_[at].passed()) break;
    }
    return nullptr;
  }
  // The same, but looks only where most of them are; null says nothing.
  template <class IsWanted>
  KIV_INLINE DedupHandle* findAtHome(U32 hash, const IsWanted& isWanted) const {
    return buckets_[home(hash)].find(hash, isWanted);
  }

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
    return buckets_[place / DedupBucket::slots].member(place % DedupBucket::slots);
  }

  void swap(DedupBuckets& other) noexcept;

 private:
  void grow();
  // Any number of buckets will do: the product's high part is below it.
  U32 home(U32 hash) const noexcept {
    constexpr U32 bits = DedupBucket::hashBits;
    return static_cast<U32>(U64{hash >> (32 - bits)} * count_ >> bits);
  }
  U32 next(U32 at) const noexcept { return at + 1 == count_ ? 0 : at + 1; }

  static DedupBucket noBucket;  // always empty

  DedupBucket* buckets_ = &noBucket;
  U32 count_ = 0;
  U32 size_ = 0;
  U32 limit_ = 0;  // members to hold before the next growth
};

template <class Visit>
void DedupBuckets::forEach(const Visit& visit) const {
  for (U32 at = 0; at < count_; ++at) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (DedupHandle* const member = buckets_[at].member(i)) visit(member);
    }
  }
}

}  // namespace Dorn

#endif
