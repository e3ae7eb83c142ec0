// The growable array inside list objects: 32-bit counts, storage from the framework allocator,
// counted by element type.
//
//                size_            capacity_       elements_
//   heap         | n              | capacity      | --> elements in an allocation of their own
//   in place     | n | inPlaceBit | elements ...    (16 octets of the object, then behind it)
//   attached     | n              | attachedMark  | --> elements behind the owning object
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

// The record under which arrays of T are counted. Each element type defines its own specialisation,
// in the source file that belongs to the element type, so all libraries share one record.
template <class T>
Kiv::Type& arrayType() noexcept;
// The record of arrays of 32-bit words: standard communities.
template <>
OV_EXPORT Kiv::Type& arrayType<U32>() noexcept;

// A growable array of 16 octets (std::vector: 24). Its capacity grows from 0 to 1 and then by
// doubling, because most lists are short. Operations that need storage raise std::bad_alloc if
// memory runs out, and std::length_error for more than maxSize elements. The array is then as it
// was before, except that assign() and resizeForOverwrite() leave it empty on std::bad_alloc.
// Either one thread, or any number of threads that only read.
//
// Instead of an allocation of their own, the elements can use the memory of the object that
// contains the array (KivStash/ArrayBehind.h). The array can then no longer grow or shrink, and
// attempts to do so abort:
// - in place: the elements follow the count, where capacity and pointer are otherwise. The array
//   must be the last member of an object that was allocated with inPlaceBytes() behind it.
// - attached: the elements are somewhere else behind the object.
template <class T>
requires std::is_nothrow_move_constructible_v<T> &&(alignof(T) <= alignof(void*)) class Vector {
 public:
  // The element type, under the name that standard algorithms expect.
  using value_type = T;

  // Largest number of elements: the octets must fit 32 bits, and the top bit of the count tells
  // whether the elements are in place.
  static constexpr U32 maxSize = std::min<U32>(0xFFFFFFFF / sizeof(T), 0x7FFFFFFF);

  // An empty array without storage.
  Vector() noexcept = default;
  // Not copyable: use assign(), so that a copy is visible in the code.
  Vector(const Vector&) = delete;
  // Not assignable, for the same reason.
  Vector& operator=(const Vector&) = delete;
  // Destroys the elements, and releases their storage if it belongs to the array.
  ~Vector() {
    std::destroy(begin(), end());
    deallocate();
  }

  // Number of elements.
  U32 size() const noexcept { return size_ & ~inPlaceBit; }
  // Number of elements that fit without a new allocation; size() if in place or attached.
  U32 capacity() const noexcept { return isInPlace() || isAttached() ? size() : capacity_; }
  // Whether there are no elements.
  bool empty() const noexcept { return size() == 0; }
  // The first element; valid until the next operation that may grow or shrink the array.
  T* data() noexcept { return const_cast<T*>(std::as_const(*this).data()); }
  // As above, for reading.
  const T* data() const noexcept {
    return isInPlace()
               ? reinterpret_cast<const T*>(reinterpret_cast<const U8*>(this) + inPlaceOffset)
               : elements_;
  }
  // Iterator to the first element.
  T* begin() noexcept { return data(); }
  // Iterator behind the last element.
  T* end() noexcept { return data() + size(); }
  // Iterator to the first element, for reading.
  const T* begin() const noexcept { return data(); }
  // Iterator behind the last element, for reading.
  const T* end() const noexcept { return data() + size(); }
  // The element at position `i`. Unchecked: requires i < size().
  T& operator[](U32 i) noexcept { return data()[i]; }
  // As above, for reading.
  const T& operator[](U32 i) const noexcept { return data()[i]; }

  // Adds an element at the end, in amortised constant time. Taken by value, so it may be an element
  // of this array. Aborts if the elements are in place or attached.
  void append(T value) {
    assertMayChange();
    if (size_ == capacity_) capacityIs(grown());
    std::construct_at(elements_ + size_, std::move(value));
    ++size_;
  }

  // Makes room for at least `capacity` elements in all, with exactly that capacity if it grows.
  void reserve(U32 capacity) {
    if (capacity > maxSize) throw std::length_error("KivStash::Vector");
    if (capacity > this->capacity()) capacityIs(capacity);
  }

  // Replaces the contents, with capacity for exactly the new ones. `values` must not be elements of
  // this array.
  void assign(std::span<const T> values) {
    if (values.size() > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(static_cast<U32>(values.size()));
    std::uninitialized_copy(values.begin(), values.end(), data());
    size_ = static_cast<U32>(values.size());
  }

  // Octets that `count` elements in place need behind the object that ends with the array.
  static constexpr std::size_t inPlaceBytes(std::size_t count) noexcept {
    const std::size_t end = inPlaceOffset + count * sizeof(T);
    return end > sizeof(Vector) ? end - sizeof(Vector) : 0;
  }
  // Copies the elements into place. Requires that the array never had elements, and that
  // inPlaceBytes(values.size()) octets were allocated behind the object.
  void inPlaceIs(std::span<const T> values) noexcept {
    size_ = static_cast<U32>(values.size()) | inPlaceBit;
    std::uninitialized_copy(values.begin(), values.end(), data());
  }
  // Whether the elements follow the count inside the object.
  bool isInPlace() const noexcept { return (size_ & inPlaceBit) != 0; }
  // Takes over elements that were constructed behind the object. The array destroys them, but does
  // not release their memory. Requires that the array never had elements.
  void attachedIs(std::span<T> elements) noexcept {
    size_ = static_cast<U32>(elements.size());
    capacity_ = attachedMark;
    elements_ = elements.data();
  }
  // Whether attachedIs() was called.
  bool isAttached() const noexcept { return !isInPlace() && capacity_ == attachedMark; }
  // Octets that the elements take outside the array object: the allocation, or the octets behind
  // the owning object.
  std::size_t storageBytes() const noexcept {
    return isInPlace() ? inPlaceBytes(size()) : capacity() * sizeof(T);
  }

  // Replaces the contents by `size` uninitialised elements, with capacity for exactly them, and
  // returns them. The caller must write each element before it is read.
  std::span<T> resizeForOverwrite(U32 size) requires std::is_trivially_copyable_v<T> {
    if (size > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(size);
    size_ = size;
    return {data(), size_};
  }

  // Destroys the elements from position `size` on; keeps the storage. Requires size <= size().
  // Aborts if elements in place or attached would change.
  void truncate(U32 size) noexcept {
    if (size == this->size()) return;
    assertMayChange();
    std::destroy(data() + size, end());
    size_ = size;
  }
  // Destroys all elements; keeps the storage.
  void clear() noexcept { truncate(0); }

  // Releases unused storage by moving the elements to a smaller allocation; with no elements,
  // releases all. Does nothing if in place or attached. Raises std::bad_alloc.
  void shrinkToFit() {
    if (capacity() > size()) capacityIs(size());
  }

 private:
  static constexpr U32 inPlaceBit = 0x80000000;
  // Octets from the array's begin to elements in place: they follow the count as closely as their
  // alignment allows.
  static constexpr std::size_t inPlaceOffset = std::max(sizeof(U32), alignof(T));
  // A value of capacity_ that no capacity reaches, not even for elements of one octet.
  static constexpr U32 attachedMark = 0xFFFFFFFF;
  static_assert(maxSize < attachedMark);

  // The next capacity when append() finds no room.
  U32 grown() const {
    if (capacity_ >= maxSize) throw std::length_error("KivStash::Vector");
    return capacity_ == 0 ? 1 : static_cast<U32>(std::min(U64{capacity_} * 2, U64{maxSize}));
  }

  // In every build: an array in the memory of its owner has no storage of its own to change.
  void assertMayChange() const noexcept {
    KIV_ASSERT(!isInPlace(), "!isInPlace()", "KivStash/Vector");
    KIV_ASSERT(!isAttached(), "!isAttached()", "KivStash/Vector");
  }

  // Releases the storage if it belongs to the array. The elements are destroyed before.
  void deallocate() noexcept {
    if (isInPlace() || isAttached() || capacity_ == 0) return;
    PtrInterface::kivMemDealloc(elements_, capacity_ * sizeof(T), arrayType<T>());
  }

  // Moves the elements to storage for exactly `capacity` elements. Requires capacity >= size().
  // Nothing has changed when the allocation throws; the moves cannot throw.
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

  U32 size_ = 0;  // with inPlaceBit
  // The next two members are not read while elements are in place: the elements overwrite them.
  U32 capacity_ = 0;
  T* elements_ = nullptr;
};

}  // namespace KivStash

#endif
