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
template <class T>
requires std::is_nothrow_move_constructible_v<T>
class Vector {
 public:
  using value_type = T;

  static constexpr U32 maxSize = 0xFFFFFFFF / sizeof(T);

  Vector() noexcept = default;
  Vector(const Vector&) = delete;
  Vector& operator=(const Vector&) = delete;
  ~Vector() {
    clear();
    deallocate(data_, capacity_);
  }

  U32 size() const noexcept { return size_; }
  U32 capacity() const noexcept { return capacity_; }
  bool empty() const noexcept { return size_ == 0; }
  T* data() noexcept { return data_; }
  const T* data() const noexcept { return data_; }
  T* begin() noexcept { return data_; }
  T* end() noexcept { return data_ + size_; }
  const T* begin() const noexcept { return data_; }
  const T* end() const noexcept { return data_ + size_; }
  T& operator[](U32 i) noexcept { return data_[i]; }
  const T& operator[](U32 i) const noexcept { return data_[i]; }

  void append(T value) {
    if (size_ == capacity_) capacityIs(grown());
    std::construct_at(data_ + size_, std::move(value));
    ++size_;
  }

  // Makes the capacity at least `capacity`, in one step.
  void reserve(U32 capacity) {
    if (capacity <= capacity_) return;
    if (capacity > maxSize) throw std::length_error("KivStash::Vector");
    capacityIs(capacity);
  }

  // Replaces the contents, with capacity for exactly them.
  void assign(std::span<const T> values) {
    if (values.size() > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(static_cast<U32>(values.size()));
    std::uninitialized_copy(values.begin(), values.end(), data_);
    size_ = capacity_;
  }

  // Replaces the contents by `size` elements, for the caller to write each of them
  // before it is read, with capacity for exactly them.
  std::span<T> resizeForOverwrite(U32 size) requires std::is_trivially_copyable_v<T> {
    if (size > maxSize) throw std::length_error("KivStash::Vector");
    clear();
    capacityIs(size);
    size_ = size;
    return {data_, size_};
  }

  // Drops the elements from position `size` on; keeps the storage.
  void truncate(U32 size) noexcept {
    std::destroy(data_ + size, data_ + size_);
    size_ = size;
  }
  void clear() noexcept { truncate(0); }

  // Gives back the storage beyond the elements, all of it when there are none.
  void shrinkToFit() {
    if (capacity_ > size_) capacityIs(size_);
  }

 private:
  U32 grown() const {
    if (capacity_ >= maxSize) throw std::length_error("KivStash::Vector");
    return capacity_ == 0 ? 1 : static_cast<U32>(std::min(U64{capacity_} * 2, U64{maxSize}));
  }

  static void deallocate(T* data, U32 capacity) noexcept {
    if (capacity == 0) return;
    PtrInterface::kivMemDealloc(data, capacity * sizeof(T), arrayType<T>());
  }

  // Moves the elements, which must fit, to storage for exactly `capacity`.
  void capacityIs(U32 capacity) {
    T* larger = nullptr;
    if (capacity != 0) {
      larger = static_cast<T*>(PtrInterface::kivMemAlloc(capacity * sizeof(T), arrayType<T>()));
    }
    std::uninitialized_move(begin(), end(), larger);
    std::destroy(begin(), end());
    deallocate(data_, capacity_);
    data_ = larger;
    capacity_ = capacity;
  }

  T* data_ = nullptr;
  U32 size_ = 0;
  U32 capacity_ = 0;
};

}  // namespace KivStash

#endif
