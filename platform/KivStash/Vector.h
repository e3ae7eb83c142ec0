// The growable array inside list objects: 32-bit counts, storage from the
// framework allocator, tracked by element type.
#ifndef KIVSTASH_VECTOR_H
#define KIVSTASH_VECTOR_H

#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "Kiv/Assert.h"
#include "Kiv/Types.h"
#include "KivStash/PtrInterface.h"

namespace KivStash {

// The record under which arrays of T are counted.  Each element type defines its
// own, in the source file of the elements' home.
template <class T>
Kiv::Type& arrayType() noexcept;
template <>
OV_EXPORT Kiv::Type& arrayType<U32>() noexcept;

// Takes 16 bytes where a standard vector takes 24, and grows from no capacity to
// one and then by doubling, as most lists are short.  Running out of memory
// raises std::bad_alloc, too many elements std::length_error; both leave the
// array as it was.  One thread, or any number of readers.
//
// The elements can also stand in the memory of the object that has the array, which
// then does not change any more:
// - in place, right behind the count, where otherwise the storage is remembered, and on
//   from there, if the array is the last member of an object that was allocated with
//   inPlaceBytes() behind it;
// - attached, somewhere else behind the object.  KivStash/ArrayBehind.h.
template <class T>
requires std::is_nothrow_move_constructible_v<T> &&(alignof(T) <= alignof(void*)) class Vector {
 public:
  using value_type = T;

  // The count's top bit says whether the elements are in place.
  static constexpr U32 maxSize = std::min<U32>(0xFFFFFFFF / sizeof(T), 0x7FFFFFFF);

  Vector() noexcept = default;
  Vector(const Vector&) = delete;
  Vector& operator=(const Vector&) = delete;
  ~Vector() {
    std::destroy(begin(), end());
    deallocate();
  }

  U32 size() const noexcept { return size_ & ~inPlaceBit; }
  U32 capacity() const noexcept { return isInPlace() || isAttached() ? size() : capacity_; }
  bool empty() const noexcept { return size() == 0; }
  T* data() noexcept { return const_cast<T*>(std::as_const(*this).data()); }
  const T* data() const noexcept {
    return isInPlace()
               ? reinterpret_cast<const T*>(reinterpret_cast<const U8*>(this) + inPlaceOffset)
               : elements_;
  }
  T* begin() noexcept { return data(); }
  T* end() noexcept { return data() + size(); }
  const T* begin() const noexcept { return data(); }
  const T* end() const noexcept { return data() + size(); }
  T& operator[](U32 i) noexcept { return data()[i]; }
  const T& operator[](U32 i) const noexcept { return data()[i]; }

  void append(T value) {
    assertMayChange();
    if (size_ == capacity_) capacityIs(grown());
    std::construct_at(elements_ + size_, std::move(value));
    ++size_;
  }

  // Makes room for at least `capacity` elements in all.
  void reserve(U32 capacity) {
    if (capacity > maxSize) throw std::length_error("KivStash::Vector");
    if (capacity > this->capacity()) capacityIs(capacity);
  }

  // Replaces the contents, with capacity for exactly them.
  void assign(std::span<const T> values) {
    if (values.size() > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(static_cast<U32>(values.size()));
    std::uninitialized_copy(values.begin(), values.end(), data());
    size_ = static_cast<U32>(values.size());
  }

  // What `count` elements in place need behind the object.
  static constexpr std::size_t inPlaceBytes(std::size_t count) noexcept {
    const std::size_t end = inPlaceOffset + count * sizeof(T);
    return end > sizeof(Vector) ? end - sizeof(Vector) : 0;
  }
  // Copies the elements into place.  Requires: never had any, and the memory is there.
  void inPlaceIs(std::span<const T> values) noexcept {
    size_ = static_cast<U32>(values.size()) | inPlaceBit;
    std::uninitialized_copy(values.begin(), values.end(), data());
  }
  bool isInPlace() const noexcept { return (size_ & inPlaceBit) != 0; }
  // Takes over elements that were made behind the object; they end with the array.
  // Requires: never had any.
  void attachedIs(std::span<T> elements) noexcept {
    size_ = static_cast<U32>(elements.size());
    capacity_ = attachedMark;
    elements_ = elements.data();
  }
  bool isAttached() const noexcept { return !isInPlace() && capacity_ == attachedMark; }
  // What the elements take beyond the object itself.
  std::size_t storageBytes() const noexcept {
    return isInPlace() ? inPlaceBytes(size()) : capacity() * sizeof(T);
  }

  // Replaces the contents by `size` elements, for the caller to write each of them
  // before it is read, with capacity for exactly them.
  std::span<T> resizeForOverwrite(U32 size) requires std::is_trivially_copyable_v<T> {
    if (size > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(size);
    size_ = size;
    return {data(), size_};
  }

  // Drops the elements from position `size` on; keeps the storage.
  void truncate(U32 size) noexcept {
    if (size == this->size()) return;
    assertMayChange();
    std::destroy(data() + size, end());
    size_ = size;
  }
  void clear() noexcept { truncate(0); }

  // Gives back the storage beyond the elements, all of it when there are none.
  void shrinkToFit() {
    if (capacity() > size()) capacityIs(size());
  }

 private:
  static constexpr U32 inPlaceBit = 0x80000000;
  // The elements follow the count as closely as their alignment allows.
  static constexpr std::size_t inPlaceOffset = std::max(sizeof(U32), alignof(T));
  // No capacity; not that of single octets, either.
  static constexpr U32 attachedMark = 0xFFFFFFFF;
  static_assert(maxSize < attachedMark);

  U32 grown() const {
    if (capacity_ >= maxSize) throw std::length_error("KivStash::Vector");
    return capacity_ == 0 ? 1 : static_cast<U32>(std::min(U64{capacity_} * 2, U64{maxSize}));
  }

  void assertMayChange() const noexcept {
    KIV_ASSERT(!isInPlace(), "!isInPlace()", "KivStash/Vector");
    KIV_ASSERT(!isAttached(), "!isAttached()", "KivStash/Vector");
  }

  void deallocate() noexcept {
    if (isInPlace() || isAttached() || capacity_ == 0) return;
    PtrInterface::kivMemDealloc(elements_, capacity_ * sizeof(T), arrayType<T>());
  }

  // Moves the elements, which must fit, to storage for exactly `capacity`.
  void capacityIs(U32 capacity) {
    assertMayChange();
    T* larger = nullptr;
    if (capacity != 0) {
      larger = static_cast<T*>(PtrInterface::kivMemAlloc(capacity * sizeof(T), arrayType<T>()));
    }
    std::uninitialized_move(begin(), end(), larger);
    std::destroy(begin(), end());
    deallocate();
    elements_ = larger;
    capacity_ = capacity;
  }

  U32 size_ = 0;  // and inPlaceBit
  // The storage, unless the elements are in place.
  U32 capacity_ = 0;
  T* elements_ = nullptr;
};

}  // namespace KivStash

#endif
