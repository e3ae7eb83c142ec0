// The storage of one shard of an interning table: a bucketed hash table with open addressing.
// It stores the addresses of handles. It owns no handle. The callers take the locks and
// compute the hashes.
//
// Shape. A bucket is one cache line with seven slots. A slot has a member's address and 23
// bits of its hash. Seven of these bits are in an 8-bit tag, and the tags of all slots are
// compared at once, within one 64-bit word (SWAR), as a Swiss table does with SIMD registers.
//
//   tags_      | 63: unused | 62-56: bit 3 of  | 55-48: tag  | ... | 7-0: tag      |
//              |            | counters 6 to 0  | of slot 6   |     | of slot 0     |
//
//   words_[i]  | 63-48: bits 31-16 | 47-3: bits 47-3 of the         | 2-0: bits 2-0 |
//              | of the hash       | member's address; 0 if free    | of counter i  |
//
//   tag       hash bits 15 to 8, of which bit 9 is always 1. A tag of 0 marks a free slot.
//   class     hash bits 15 to 10, scaled to 0 ... 6: selects the overflow counter.
//   home      (hash >> 8) * buckets >> 24. Only the upper 24 bits of a hash are used.
//
// Placement is first fit along a fixed probe sequence: the home bucket, the other bucket of its
// pair (the bucket's number XOR 1), a far bucket that a second hash selects, and from there
// bucket by bucket. A full bucket that a member had to skip counts it in the overflow counter
// of the member's class. A lookup continues past a bucket only if the counter is not zero.
//
//   next(b)    the sequence above
//   find(h)    b = home(h)
//              loop: return a slot of b whose tag is that of h and that the caller accepts
//                    return nothing if counter(b, class(h)) == 0
//                    b = next(b)
//   insert(h)  b = home(h)
//              while b is full: counter(b, class(h)) += 1; b = next(b)
//              store in the first free slot of b
//   erase(h)   find the slot; free it
//              counter(b, class(h)) -= 1 for each bucket b before it in the sequence
//   a counter that has reached 15 keeps this value until the table grows
//
// Why it is built so:
// - Tags. A lookup reads a member, which is another cache line, only if its tag matches. About
//   2 % of the hits call the caller's predicate for a wrong candidate first. Comparing the other
//   16 bits before would avoid these calls and make every lookup slower. The bits in a
//   slot give its tag, class and home bucket again, so growth reads no member.
// - The pair bucket shares an aligned block of 128 bytes with the home bucket, and processors
//   mostly fetch such a block together. The far bucket keeps a cluster of full buckets from
//   filling its neighbours.
// - Overflow counters instead of tombstones. Removal leaves no marker and moves no member, so a
//   table under long churn needs no rebuild.
// - Seven counters instead of one. Under churn, members stored elsewhere do not move back when
//   their home bucket gets room. With a single counter a bucket, nearly every counter is not
//   zero at a load factor of 6/7, and a miss reads dozens of buckets. With a counter for each
//   class, it reads 2.8. The counters use bits that alignment leaves free, so they take no room.
//
// Cost. In a table with few removals, hits and misses mostly read one bucket. After long churn, a
// miss reads 1.5 buckets on average at a load factor of 3/4, and 2.8 at 6/7. A slot takes
// 64 / 7 = 9.14 bytes.
//
// Growth. Each shard grows on its own; a table for one thread is one shard, a table with locks has
// 256. A shard of fewer than 2,048 buckets grows at a load factor of 5/7, a larger shard at 6/7. A
// shard of n buckets grows to 2 n + 1 if n is below 16, and by a quarter otherwise. It never
// shrinks. Most members keep the order of their hashes, so growth reads the old array and writes
// the new array mostly from end to end.
//
// Threads: like a standard container. The owner's lock guards each object of these classes.
#ifndef DORN_DEDUPBUCKETS_H
#define DORN_DEDUPBUCKETS_H

#include <cstddef>

#include "Kiv/Assert.h"
#include "Kiv/Inline.h"
#include "Kiv/Types.h"

namespace Dorn {

class DedupHandle;

// One bucket: seven slots and seven overflow counters in one cache line. All-zero memory is an
// empty bucket.
//
// Bit 9 of every hash that a bucket is given is 1. Therefore a tag is never 0, which marks a free
// slot, nor 1, which zeros() can report as free. Bit 9 is used because it hardly affects the home
// bucket; forcing a high bit would leave half of the buckets without a home member.
class alignas(64) DedupBucket {
 public:
  // The number of slots of a bucket, and also of overflow counters: counter i uses bits of the
  // word of slot i.
  static constexpr U32 slots = 7;
  // The number of upper bits of a 32-bit hash that are used, stored or not.
  static constexpr U32 hashBits = 24;

  // A set of slots: slot i is in the set if bit 8 i + 7 is 1.
  using SlotSet = U64;
  // The lowest slot of a set that is not empty.
  static U32 firstOf(SlotSet set) noexcept { return static_cast<U32>(__builtin_ctzll(set)) / 8; }

  // The slots whose tag is that of `hash`, and maybe a few more (see zeros()). Computed
  // without a branch, because a processor cannot predict which slot matches.
  SlotSet candidates(U32 hash) const noexcept { return zeros(tags_ ^ (hash >> 8 & 0xFF) * ones); }
  // The free slots; empty if and only if the bucket is full. Only the first slot of the set is
  // certainly free.
  SlotSet freeSlots() const noexcept { return zeros(tags_); }

  // The first member that has the tag of `hash` and that `isWanted(DedupHandle*)` accepts, or
  // null. The predicate is called for every such member, so it must compare the contents. Its
  // exceptions are passed on.
  template <class IsWanted>
  KIV_INLINE DedupHandle* find(U32 hash, const IsWanted& isWanted) const {
    for (SlotSet found = candidates(hash); found != 0; found &= found - 1) {
      DedupHandle* const candidate = member(firstOf(found));
      if (isWanted(candidate)) return candidate;
    }
    return nullptr;
  }
  // The member in slot `i`; null if the slot is free.
  DedupHandle* member(U32 i) const noexcept { return memberOf(words_[i] & addressMask); }
  // The upper 24 bits of the hash in slot `i`, at their places; the lower bits are 0.
  U32 hash(U32 i) const noexcept {
    return static_cast<U32>(words_[i] >> addressBits) << 16 |
           static_cast<U32>(tags_ >> 8 * i & 0xFF) << 8;
  }

  // Frees slot `i`, which must not be free. The overflow counters stay.
  void slotDel(U32 i) noexcept {
    tags_ &= ~(U64{0xFF} << 8 * i);
    words_[i] &= overflowLowMask;
  }
  // Stores a member in slot `i`, which must be free. `member` must fit (fits()).
  void slotIs(U32 i, U32 hash, DedupHandle* member) noexcept {
    tags_ |= U64{hash >> 8 & 0xFF} << 8 * i;
    words_[i] |= U64{hash >> 16} << addressBits | reinterpret_cast<std::uintptr_t>(member);
  }
  // Frees the slot of `member`, whose hash is `hash`. Returns false if this bucket does not
  // contain it. Compares addresses and reads no member.
  bool erase(U32 hash, const DedupHandle* member) noexcept {
    for (SlotSet found = candidates(hash); found != 0; found &= found - 1) {
      const U32 i = firstOf(found);
      if (this->member(i) != member) continue;
      slotDel(i);
      return true;
    }
    return false;
  }

  // Whether members of the class of `hash` may be stored in later buckets of their probe
  // sequence because this bucket was full. If false, a lookup can stop here.
  bool overflowed(U32 hash) const noexcept { return overflow(classOf(hash)) != 0; }
  // Counts a member with this hash that is stored in a later bucket.
  void overflowInc(U32 hash) noexcept {
    const U32 i = classOf(hash);
    if (overflow(i) != overflowStuck) overflowIs(i, overflow(i) + 1);
  }
  // Uncounts a member that overflowInc counted and that is erased from a later bucket. A
  // counter at its maximum has lost count and stays there: lookups then read more buckets than
  // necessary, but miss no member.
  void overflowDec(U32 hash) noexcept {
    const U32 i = classOf(hash);
    if (overflow(i) != overflowStuck) overflowIs(i, overflow(i) - 1);
  }

  // Whether a slot can hold the address: at most 48 bits wide and aligned to eight bytes.
  static bool fits(const DedupHandle* member) noexcept {
    return (U64{reinterpret_cast<std::uintptr_t>(member)} & ~addressMask) == 0;
  }

 private:
  static constexpr U64 ones = 0x01010101010101;  // 1 in each of the seven tags
  // A system gives a 64-bit process no address of more than 48 bits unless it asks for one.
  static constexpr U32 addressBits = 48;
  // Bits 0 to 2 of counter i are in the word of slot i, where alignment leaves three address
  // bits free. Bit 3 is bit 56 + i of tags_.
  static constexpr U64 overflowLowMask = 7;
  static constexpr U32 overflowHighShift = 56;
  static constexpr U32 overflowStuck = 15;  // the counter's maximum, which it never leaves
  static constexpr U64 addressMask = ((U64{1} << addressBits) - 1) & ~overflowLowMask;

  // The class must not depend on the hash's upper bits: members with one home bucket have
  // these in common, and would all be in the same class.
  static U32 classOf(U32 hash) noexcept { return (hash >> 10 & 0x3F) * slots >> 6; }
  U32 overflow(U32 i) const noexcept {
    return static_cast<U32>((words_[i] & overflowLowMask) | (tags_ >> (overflowHighShift + i) & 1)
                                                                << 3);
  }
  void overflowIs(U32 i, U32 count) noexcept {
    words_[i] = (words_[i] & ~overflowLowMask) | (count & overflowLowMask);
    const U32 high = overflowHighShift + i;
    tags_ = (tags_ & ~(U64{1} << high)) | U64{count >> 3} << high;
  }
  static DedupHandle* memberOf(U64 address) noexcept {
    return reinterpret_cast<DedupHandle*>(static_cast<std::uintptr_t>(address));
  }

  // The bytes that are 0, of the lower seven. The subtraction's borrow can also report a byte
  // of 1 that is above a byte of 0, so only the lowest one of the result is exact.
  static SlotSet zeros(U64 bytes) noexcept { return (bytes - ones) & ~bytes & ones << 7; }

  U64 tags_ = 0;           // see the drawing at the top
  U64 words_[slots] = {};  // likewise
};
static_assert(sizeof(DedupBucket) == 64);

// A growing array of buckets. Movable, not copyable. Members move to other slots only when the
// array grows.
class DedupBuckets {
 public:
  // An empty set without memory. The first insertion allocates.
  DedupBuckets() noexcept = default;
  // Takes the buckets of `other` and leaves it empty.
  DedupBuckets(DedupBuckets&& other) noexcept { swap(other); }
  DedupBuckets(const DedupBuckets&) = delete;
  DedupBuckets& operator=(const DedupBuckets&) = delete;
  // Frees the buckets; their members are not touched.
  ~DedupBuckets();

  // The number of members.
  U32 size() const noexcept { return size_; }

  // Prefetches the home bucket of `hash` for a coming lookup, insertion or removal. Always
  // inlined, because GCC drops calls of functions that only prefetch.
  KIV_INLINE void prefetch(U32 hash) const noexcept { __builtin_prefetch(buckets_ + home(hash)); }
  // The member with the tag of `hash` that `isWanted(DedupHandle*)` accepts, or null. The
  // predicate can see members of other hashes, too (DedupBucket::find).
  template <class IsWanted>
  KIV_INLINE DedupHandle* find(U32 hash, const IsWanted& isWanted) const {
    if (DedupHandle* const member = findAtHome(hash, isWanted)) return member;
    return findElsewhere(hash, isWanted);
  }
  // The fast path of find(): looks into the home bucket only, which contains most members.
  // Null does not mean that the member does not exist.
  template <class IsWanted>
  KIV_INLINE DedupHandle* findAtHome(U32 hash, const IsWanted& isWanted) const {
    return buckets_[home(hash)].find(hash, isWanted);
  }
  // The slow path of find(), after findAtHome() has returned null: looks into all buckets of
  // the probe sequence but the home bucket.
  template <class IsWanted>
  KIV_INLINE DedupHandle* findElsewhere(U32 hash, const IsWanted& isWanted) const {
    U32 at = home(hash);
    // The bound is needed when the class has overflowed from every bucket. After so many steps
    // the probe sequence has visited all of them.
    for (U32 step = 0; buckets_[at].overflowed(hash) && step <= count_; ++step) {
      at = next(step, at, hash);
      if (DedupHandle* const member = buckets_[at].find(hash, isWanted)) return member;
    }
    return nullptr;
  }

  // Makes room for one more member, and grows the array if need be. The only function that
  // allocates. Throws std::bad_alloc, and then nothing has changed.
  void reserveOne() {
    if (size_ >= limit_) grow();
  }
  // Stores a member. Requires reserveOne() since the last insertion, and that `member` is not
  // in the set. An address that does not fit into a slot ends the process.
  void insert(U32 hash, DedupHandle* member) noexcept {
    KIV_ASSERT(DedupBucket::fits(member), "fits(member)", "Dorn/DedupBuckets");
    DedupBucket* bucket = buckets_ + home(hash);
    if (bucket->freeSlots() == 0) bucket = &overflowBucket(hash);
    bucket->slotIs(DedupBucket::firstOf(bucket->freeSlots()), hash, member);
    ++size_;
  }
  // Removes `member`, which was inserted with this hash. Returns false if it is not in the set.
  bool erase(U32 hash, const DedupHandle* member) noexcept {
    const bool wasHome = buckets_[home(hash)].erase(hash, member);
    const bool was = wasHome || eraseElsewhere(hash, member);
    size_ -= was ? 1 : 0;
    return was;
  }

  // Calls `visit(DedupHandle*)` for each member, in the order of the slots. `visit` must not
  // change the set.
  template <class Visit>
  void forEach(const Visit& visit) const;

  // Removes each member for which `isLeaving(DedupHandle*)` is true. For the end of a table: the
  // overflow counters stay, so later lookups may read more buckets than necessary.
  template <class IsLeaving>
  void eraseIf(const IsLeaving& isLeaving);

  // The number of slots of all buckets. With memberAt() it serves walks that release the lock
  // between two members, because a member keeps its slot as long as this number does not change.
  U32 slotCount() const noexcept { return count_ * DedupBucket::slots; }
  // The member in a slot, or null. Requires: slot < slotCount().
  DedupHandle* memberAt(U32 slot) const noexcept {
    return buckets_[slot / DedupBucket::slots].member(slot % DedupBucket::slots);
  }

  // Exchanges the contents of two sets; no member moves.
  void swap(DedupBuckets& other) noexcept;

 private:
  void grow();
  DedupBucket& overflowBucket(U32 hash) noexcept;
  bool eraseElsewhere(U32 hash, const DedupHandle* member) noexcept;

  // Maps 24 bits evenly to a bucket by a multiplication. A division would take longer, and a
  // mask would need a power of two and so tables that double.
  U32 scaled(U32 bits) const noexcept {
    return static_cast<U32>(U64{bits} * count_ >> DedupBucket::hashBits);
  }
  U32 home(U32 hash) const noexcept { return scaled(hash >> (32 - DedupBucket::hashBits)); }
  // The bucket that follows bucket `at` in the probe sequence of `hash`. `step` is the number
  // of steps from the home bucket to `at`. The last bucket of an odd number has no pair bucket:
  // then the far bucket is used twice, and insert and erase count it twice.
  U32 next(U32 step, U32 at, U32 hash) const noexcept {
    constexpr U32 dropped = 32 - DedupBucket::hashBits;
    if (step == 0 && (at ^ 1) < count_) return at ^ 1;
    if (step <= 1) return scaled((hash >> dropped) * 0x9E3779B1 >> dropped);
    return at + 1 == count_ ? 0 : at + 1;
  }

  // Shared by all sets without memory, so that a lookup need not check for it. Never written.
  static DedupBucket noBucket;

  DedupBucket* buckets_ = &noBucket;
  U32 count_ = 0;  // of buckets
  U32 size_ = 0;
  U32 limit_ = 0;  // the number of members at which the next insertion grows the array
};

template <class Visit>
void DedupBuckets::forEach(const Visit& visit) const {
  for (U32 at = 0; at < count_; ++at) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      if (DedupHandle* const member = buckets_[at].member(i)) visit(member);
    }
  }
}

template <class IsLeaving>
void DedupBuckets::eraseIf(const IsLeaving& isLeaving) {
  for (U32 at = 0; at < count_; ++at) {
    for (U32 i = 0; i < DedupBucket::slots; ++i) {
      DedupHandle* const member = buckets_[at].member(i);
      if (!member || !isLeaving(member)) continue;
      buckets_[at].slotDel(i);
      --size_;
    }
  }
}

}  // namespace Dorn

#endif
