// A hash set of small keys in one array.
#ifndef KIV_FLATSET_H
#define KIV_FLATSET_H

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

#include "Kiv/Types.h"

namespace Kiv {

// Keys are values of a few octets that can be made of nothing; such an empty key marks
// a free place, and as a member it is remembered apart. A key that finds its place
// taken goes to the next free one; removal moves those behind it up, so that a search
// ends at the first free place. Grows by half once two thirds are taken, when a search for
// what is not there takes five steps, and keeps what it has. Owner thread only.
template <class Key, class Hash = std::hash<Key>>
class FlatSet {
 public:
  // Over the members, in no order; ends with any change of the set.
  class Iterator {
   public:
    using value_type = Key;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::forward_iterator_tag;
    using pointer = const Key*;
    using reference = const Key&;

    Iterator() noexcept = default;
    const Key& operator*() const noexcept {
      return at_ < set_->places_ ? set_->keys_[at_] : set_->none_;
    }
    const Key* operator->() const noexcept { return &**this; }
    Iterator& operator++() noexcept {
      ++at_;
      skip();
      return *this;
    }
    Iterator operator++(int) noexcept {
      Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const Iterator& other) const noexcept { return at_ == other.at_; }

   private:
    friend class FlatSet;

    // The empty key stands behind the last place.
    Iterator(const FlatSet& set, std::size_t at) noexcept : set_(&set), at_(at) { skip(); }
    void skip() noexcept {
      while (at_ < set_->places_ && isNone(set_->keys_[at_])) ++at_;
      if (at_ == set_->places_ && !set_->hasNone_) ++at_;
    }

    const FlatSet* set_ = nullptr;
    std::size_t at_ = 0;
  };

  FlatSet() noexcept = default;
  FlatSet(const FlatSet&) = delete;
  FlatSet& operator=(const FlatSet&) = delete;

  U32 size() const noexcept { return size_ + (hasNone_ ? 1 : 0); }
  bool has(const Key& key) const noexcept {
    return isNone(key) ? hasNone_ : size_ != 0 && keys_[placeOf(key)] == key;
  }
  // Both return whether anything changed. Throws std::bad_alloc, and changes nothing.
  bool add(const Key& key) {
    if (isNone(key)) return !std::exchange(hasNone_, true);
    U32 place = places_ == 0 ? 0 : placeOf(key);
    if (places_ != 0 && keys_[place] == key) return false;
    if (size_ >= limit()) {
      grow();
      place = placeOf(key);
    }
    keys_[place] = key;
    first_ = std::min(first_, place);
    ++size_;
    return true;
  }
  bool del(const Key& key) noexcept {
    if (isNone(key)) return std::exchange(hasNone_, false);
    if (size_ == 0) return false;
    const U32 place = placeOf(key);
    if (keys_[place] != key) return false;
    // Goes at the end: the key may be the one that is deleted.
    [[maybe_unused]] const Key leaving = std::exchange(keys_[place], Key{});
    closeUp(place);
    --size_;
    return true;
  }

  // Goes on from where the last search ended, so that one may empty the set from here.
  Iterator begin() const noexcept {
    const Iterator first(*this, first_);
    first_ = static_cast<U32>(std::min(first.at_, std::size_t{places_}));
    return first;
  }
  Iterator end() const noexcept { return {*this, std::size_t{places_} + 1}; }

 private:
  static bool isNone(const Key& key) noexcept { return key == Key{}; }
  U32 limit() const noexcept { return static_cast<U32>(U64{places_} * 2 / 3); }
  // Any number of places will do, and any hash: the product's high half is below it.
  U32 home(const Key& key) const noexcept {
    const U64 spread = U64{Hash{}(key)} * 0x9E3779B97F4A7C15;
    return static_cast<U32>((spread >> 32) * places_ >> 32);
  }
  U32 next(U32 place) const noexcept { return place + 1 == places_ ? 0 : place + 1; }
  // Where the key is, or the free place where it would be.
  U32 placeOf(const Key& key) const noexcept {
    U32 place = home(key);
    while (!isNone(keys_[place]) && keys_[place] != key) place = next(place);
    return place;
  }
  // Fills the free place from behind: with keys whose way from home leads past it.
  void closeUp(U32 free) noexcept {
    for (U32 place = next(free); !isNone(keys_[place]); place = next(place)) {
      const U32 from = home(keys_[place]);
      const bool staysBehind =
          free <= place ? free < from && from <= place : free < from || from <= place;
      if (staysBehind) continue;
      keys_[free] = std::exchange(keys_[place], Key{});
      free = place;
    }
  }
  void grow() {
    const U32 places = places_ + places_ / 2 + 4;
    auto former = std::make_unique<Key[]>(places);
    former.swap(keys_);
    const U32 formerPlaces = std::exchange(places_, places);
    first_ = 0;
    for (U32 i = 0; i < formerPlaces; ++i) {
      if (!isNone(former[i])) keys_[placeOf(former[i])] = std::move(former[i]);
    }
  }

  std::unique_ptr<Key[]> keys_;
  U32 places_ = 0;
  U32 size_ = 0;           // without the empty key
  mutable U32 first_ = 0;  // no member stands before
  bool hasNone_ = false;
  const Key none_{};  // for iterators to point to
};

}  // namespace Kiv

#endif
