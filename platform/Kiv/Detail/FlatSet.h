// A hash set of small keys in one array: open addressing with linear probing and backward-shift
// deletion. Needed by public templates such as Kiv/NotifyingSet.h; not for direct use.
#ifndef KIV_DETAIL_FLATSET_H
#define KIV_DETAIL_FLATSET_H

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

#include "Kiv/Types.h"

namespace Kiv {

// A set of keys of a few octets. The empty key, Key{}, marks a free slot; whether the empty key
// itself is a member is stored in a flag beside the slots.
//
// A key is stored in its home slot, or else in the next free slot. Removal moves later keys back
// into the gap, so that a search ends at the first free slot and no tombstones are needed. The
// array grows by half at a load factor of two thirds, where a miss reads five slots on average,
// and it never shrinks.
//
// Requirements: copying, moving, comparing and hashing keys does not throw. Where keys are received
// data, `Hash` must be keyed (Kiv/Hash.h).
//
// Threads: one at a time, and reading counts, too, since begin() of a const set writes a cache.
template <class Key, class Hash = std::hash<Key>>
class FlatSet {
 public:
  // A forward iterator over the members, in no particular order. Every change of the set
  // invalidates all its iterators.
  class Iterator {
   public:
    // The standard names that algorithms expect of an iterator.
    using value_type = Key;
    // As std::iterator_traits requires.
    using difference_type = std::ptrdiff_t;
    // Several passes over an unchanged set give the same order.
    using iterator_category = std::forward_iterator_tag;
    // Members are constant: a change of a key would move it to another slot.
    using pointer = const Key*;
    // As for `pointer`.
    using reference = const Key&;

    // A singular iterator, which may only be assigned to.
    Iterator() noexcept = default;
    // The member. It is in the array, or, for the empty key, in the set beside the array.
    const Key& operator*() const noexcept {
      return at_ < set_->slots_ ? set_->keys_[at_] : set_->emptyKey_;
    }
    // The address of the member.
    const Key* operator->() const noexcept { return &**this; }
    // Moves to the next member, over free slots.
    Iterator& operator++() noexcept {
      ++at_;
      skip();
      return *this;
    }
    // As above; returns the position before.
    Iterator operator++(int) noexcept {
      Iterator before = *this;
      ++*this;
      return before;
    }
    // Compares positions. Requires that both iterators belong to the same set.
    bool operator==(const Iterator& other) const noexcept { return at_ == other.at_; }

   private:
    friend class FlatSet;

    // Positions 0 to slots_ - 1 are slots, slots_ is the empty key, slots_ + 1 is the end.
    Iterator(const FlatSet& set, std::size_t at) noexcept : set_(&set), at_(at) { skip(); }
    void skip() noexcept {
      while (at_ < set_->slots_ && isEmptyKey(set_->keys_[at_])) ++at_;
      if (at_ == set_->slots_ && !set_->hasEmptyKey_) ++at_;
    }

    const FlatSet* set_ = nullptr;
    std::size_t at_ = 0;
  };

  // An empty set; allocates nothing before the first add().
  FlatSet() noexcept = default;
  // Not copyable: iterators point to the set.
  FlatSet(const FlatSet&) = delete;
  // Not assignable, as it is not copyable.
  FlatSet& operator=(const FlatSet&) = delete;

  // The number of members, the empty key included.
  U32 size() const noexcept { return size_ + (hasEmptyKey_ ? 1 : 0); }
  // Whether `key` is a member.
  bool has(const Key& key) const noexcept {
    return isEmptyKey(key) ? hasEmptyKey_ : size_ != 0 && keys_[slotOf(key)] == key;
  }
  // Makes `key` a member; returns whether it was not one before. Throws std::bad_alloc, and then
  // changes nothing, if the array has to grow and memory is short.
  bool add(const Key& key) {
    if (isEmptyKey(key)) return !std::exchange(hasEmptyKey_, true);
    U32 slot = slots_ == 0 ? 0 : slotOf(key);
    if (slots_ != 0 && keys_[slot] == key) return false;
    if (size_ >= limit()) {
      grow();
      slot = slotOf(key);
    }
    keys_[slot] = key;
    first_ = std::min(first_, slot);
    ++size_;
    return true;
  }
  // Removes `key`; returns whether it was a member.
  bool del(const Key& key) noexcept {
    if (isEmptyKey(key)) return std::exchange(hasEmptyKey_, false);
    if (size_ == 0) return false;
    const U32 slot = slotOf(key);
    if (keys_[slot] != key) return false;
    // Destroy the member last: `key` may be a reference to this very member, and a key that is a
    // counted pointer may run a destructor, which must find the set consistent.
    [[maybe_unused]] const Key leaving = std::exchange(keys_[slot], Key{});
    closeUp(slot);
    --size_;
    return true;
  }

  // The first member. The search for it continues where the last call ended, so that removing
  // *begin() until the set is empty takes linear time altogether.
  Iterator begin() const noexcept {
    const Iterator first(*this, first_);
    first_ = static_cast<U32>(std::min(first.at_, std::size_t{slots_}));
    return first;
  }
  // The position behind the last member.
  Iterator end() const noexcept { return {*this, std::size_t{slots_} + 1}; }

 private:
  static bool isEmptyKey(const Key& key) noexcept { return key == Key{}; }
  // The number of keys at which the array grows. Always less than slots_, so every search finds a
  // free slot and ends.
  U32 limit() const noexcept { return static_cast<U32>(U64{slots_} * 2 / 3); }
  // The slot where the search for `key` begins. std::hash of an integer is the integer itself, so
  // the hash is spread by a multiplication first (Fibonacci hashing). The second multiplication
  // maps the upper 32 bits to [0, slots_) without a division, for any number of slots.
  U32 home(const Key& key) const noexcept {
    const U64 spread = U64{Hash{}(key)} * 0x9E3779B97F4A7C15;
    return static_cast<U32>((spread >> 32) * slots_ >> 32);
  }
  U32 next(U32 slot) const noexcept { return slot + 1 == slots_ ? 0 : slot + 1; }
  // The slot with `key`, or the free slot where add() would store `key`. Requires slots.
  U32 slotOf(const Key& key) const noexcept {
    U32 slot = home(key);
    while (!isEmptyKey(keys_[slot]) && keys_[slot] != key) slot = next(slot);
    return slot;
  }
  // Restores the invariant after the slot `free` has become free: no free slot lies between the
  // home of a key and its slot. Every later key of the same run whose way from its home leads past
  // the gap moves into the gap, and its former slot becomes the gap.
  void closeUp(U32 free) noexcept {
    for (U32 slot = next(free); !isEmptyKey(keys_[slot]); slot = next(slot)) {
      const U32 from = home(keys_[slot]);
      // Whether the home is behind the gap, in cyclic order.
      const bool staysBehind =
          free <= slot ? free < from && from <= slot : free < from || from <= slot;
      if (staysBehind) continue;
      keys_[free] = std::exchange(keys_[slot], Key{});
      free = slot;
    }
  }
  // Replaces the array. The allocation comes first, so that a failure changes nothing.
  void grow() {
    const U32 slots = slots_ + slots_ / 2 + 4;
    auto former = std::make_unique<Key[]>(slots);
    former.swap(keys_);
    const U32 formerSlots = std::exchange(slots_, slots);
    first_ = 0;
    for (U32 i = 0; i < formerSlots; ++i) {
      if (!isEmptyKey(former[i])) keys_[slotOf(former[i])] = std::move(former[i]);
    }
  }

  std::unique_ptr<Key[]> keys_;
  U32 slots_ = 0;             // length of keys_
  U32 size_ = 0;              // occupied slots, so without the empty key
  mutable U32 first_ = 0;     // all slots before this one are free; begin() advances it
  bool hasEmptyKey_ = false;  // whether Key{} is a member
  const Key emptyKey_{};      // the object that an iterator at the empty key refers to
};

}  // namespace Kiv

#endif
