// The storage of one shard of an interning table: an open-addressing hash set of
// handles, without lock or ownership.
//
// A bucket is one cache line of seven slots.  It keeps 23 bits of each member's hash,
// eight of them (the tag) where one comparison finds them, the others in what an
// address leaves free of its word, so that growth touches no object.  A probe asks who
// has the tag: one in fifty asks another one first.  To compare the other bits before
// would spare it that, and cost every probe more.
//
// A member that finds its home bucket full goes to the other one of its pair; if that is
// full, too, to one far away, which its hash names; and from there to the next one with
// room.  Every bucket that it passed counts it, by one of seven classes of hashes: so a
// probe goes on exactly while somebody of its class went past, and removal needs no
// markers and moves nobody.  One count for all would not do.  In a table that members
// come to and go from for long, those who once passed a bucket stay away from it when it
// gets room again, and at six sevenths nearly every bucket has been passed by somebody:
// a miss would look at dozens of them, and so it looks at three.
//
// Cost: a hit or miss mostly touches one bucket, 9.2 bytes a slot, filled to six
// sevenths before it grows by a quarter.  Most members stand in the order of their
// hashes, in old buckets as in new ones, so growth reads and writes memory from end to
// end.
#ifndef DORN_DEDUPBUCKETS_H
#define DORN_DEDUPBUCKETS_H

#include <cstddef>

#include "Kiv/Assert.h"
#include "Kiv/Inline.h"
#include "Kiv/Types.h"

namespace Dorn {

class DedupHandle;

// Of a hash the upper 24 bits count.  Bit 9 is always set, so that the tag, bits 8 to
// 15, is not that of a free slot, which is 0, nor 1, which may pass for it (zeros).  It
// hardly tells homes apart, as a high bit would, of which tables then used but a half.
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

  // The member of this hash that `isWanted(DedupHandle*)` accepts, or null; it is asked of
  // whoever has the tag.
  template <class IsWanted>
  KIV_INLINE DedupHandle* find(U32 hash, const IsWanted& isWanted) const {
    for (Slots found = candidates(hash); found != 0; found &= found - 1) {
      DedupHandle* const candidate = member(firstOf(found));
      if (isWanted(candidate)) return candidate;
    }
    return nullptr;
  }
  // The member in the slot; null if it is free.
  DedupHandle* member(U32 i) const noexcept { return memberOf(words_[i] & addressMask); }
  // As much of the hash of slot `i` as counts.
  U32 hash(U32 i) const noexcept {
    return static_cast<U32>(words_[i] >> addressBits) << 16 |
           static_cast<U32>(tags_ >> 8 * i & 0xFF) << 8;
  }

  void slotIs(U32 i, U32 hash, DedupHandle* member) noexcept {
    tags_ |= U64{hash >> 8 & 0xFF} << 8 * i;
    words_[i] |= U64{hash >> 16} << addressBits | reinterpret_cast<std::uintptr_t>(member);
  }
  // Whether `member`, of this hash, was there.
  bool erase(U32 hash, const DedupHandle* member) noexcept {
    for (Slots found = candidates(hash); found != 0; found &= found - 1) {
      const U32 i = firstOf(found);
      if (this->member(i) != member) continue;
      tags_ &= ~(U64{0xFF} << 8 * i);
      words_[i] &= passedMask;
      return true;
    }
    return false;
  }

  // Whether there may be members of this hash that this bucket was too full for.
  bool passed(U32 hash) const noexcept { return passedOf(classOf(hash)) != 0; }
  void passedInc(U32 hash) noexcept {
    const U32 i = classOf(hash);
    if (passedOf(i) != passedMany) passedIs(i, passedOf(i) + 1);
  }
  void passedDec(U32 hash) noexcept {
    const U32 i = classOf(hash);
    if (passedOf(i) != passedMany) passedIs(i, passedOf(i) - 1);
  }

  // Whether the address leaves room for what is kept beside it.
  static bool fits(const DedupHandle* member) noexcept {
    return (U64{reinterpret_cast<std::uintptr_t>(member)} & ~addressMask) == 0;
  }

 private:
  static constexpr U64 ones = 0x01010101010101;
  // What a program of 64 bits gets from its system unless it asks for more.
  static constexpr U32 addressBits = 48;
  // Objects are aligned to eight octets, which leaves three bits.  In the word of slot i
  // they hold the lower part of the count of who passed of class i.
  static constexpr U64 passedMask = 7;
  static constexpr U32 passedShift = 56;  // bit i above has the fourth bit of that count
  static constexpr U32 passedMany = 15;   // no more are counted, nor fewer
  static constexpr U64 addressMask = ((U64{1} << addressBits) - 1) & ~passedMask;

  // By the tag, which hardly tells buckets apart.
  static U32 classOf(U32 hash) noexcept { return (hash >> 10 & 0x3F) * slots >> 6; }
  U32 passedOf(U32 i) const noexcept {
    return static_cast<U32>((words_[i] & passedMask) | (tags_ >> (passedShift + i) & 1) << 3);
  }
  void passedIs(U32 i, U32 count) noexcept {
    words_[i] = (words_[i] & ~passedMask) | (count & passedMask);
    tags_ = (tags_ & ~(U64{1} << (passedShift + i))) | U64{count >> 3} << (passedShift + i);
  }
  static DedupHandle* memberOf(U64 address) noexcept {
    return reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(address));
  }

  // The octets, of seven, that are 0; behind the first one, some that are 1, too.
  static Slots zeros(U64 octets) noexcept { return (octets - ones) & ~octets & ones << 7; }

  U64 tags_ = 0;           // an octet a slot, and of each class' count a bit
  U64 words_[slots] = {};  // a slot each: hash, address, and of a class' count three bits
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
    if (DedupHandle* const member = findAtHome(hash, isWanted)) return member;
    return findElsewhere(hash, isWanted);
  }
  // The two halves of that: where most of them are; and all other places.
  template <class IsWanted>
  KIV_INLINE DedupHandle* findAtHome(U32 hash, const IsWanted& isWanted) const {
    return buckets_[home(hash)].find(hash, isWanted);
  }
  template <class IsWanted>
  KIV_INLINE DedupHandle* findElsewhere(U32 hash, const IsWanted& isWanted) const {
    U32 at = home(hash);
    // Bounded, as every bucket may have been passed by somebody.
    for (U32 step = 0; buckets_[at].passed(hash) && step <= count_; ++step) {
      at = after(step, at, hash);
      if (DedupHandle* const member = buckets_[at].find(hash, isWanted)) return member;
    }
    return nullptr;
  }

  // Makes room for one more member; the only operation that allocates.  Throws
  // std::bad_alloc and leaves everything as it was.
  void reserveOne() {
    if (size_ >= limit_) grow();
  }
  // Requires: reserveOne() since the last insertion; `member` is not there yet.
  void insert(U32 hash, DedupHandle* member) noexcept {
    KIV_ASSERT(DedupBucket::fits(member), "fits(member)", "Dorn/DedupBuckets");
    DedupBucket* bucket = buckets_ + home(hash);
    if (bucket->freeSlots() == 0) bucket = &roomElsewhere(hash);
    bucket->slotIs(DedupBucket::firstOf(bucket->freeSlots()), hash, member);
    ++size_;
  }
  // Whether `member`, of this hash, was there.
  bool erase(U32 hash, const DedupHandle* member) noexcept {
    const bool wasHome = buckets_[home(hash)].erase(hash, member);
    const bool was = wasHome || eraseElsewhere(hash, member);
    size_ -= was ? 1 : 0;
    return was;
  }

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
  // The first bucket with room, if that is not the home bucket; all before are told.
  DedupBucket& roomElsewhere(U32 hash) noexcept;
  bool eraseElsewhere(U32 hash, const DedupHandle* member) noexcept;

  // Any number of buckets will do: the product's high part is below it.
  U32 scaled(U32 bits) const noexcept {
    return static_cast<U32>(U64{bits} * count_ >> DedupBucket::hashBits);
  }
  U32 home(U32 hash) const noexcept { return scaled(hash >> (32 - DedupBucket::hashBits)); }
  // Where to go on after bucket `at`, `step` buckets behind the home bucket: first to the
  // other one of its pair, which caches mostly fetch with it; then far away, lest full
  // buckets fill those beside them; then one by one.
  U32 after(U32 step, U32 at, U32 hash) const noexcept {
    constexpr U32 dropped = 32 - DedupBucket::hashBits;
    if (step == 0 && (at ^ 1) < count_) return at ^ 1;
    if (step <= 1) return scaled((hash >> dropped) * 0x9E3779B1 >> dropped);
    return at + 1 == count_ ? 0 : at + 1;
  }

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
