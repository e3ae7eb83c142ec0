// Text buffers: where text of unknown length is put together, for example the line that a policy
// matches.
//
// A formatter is an ordinary function that takes a DynamicBufferInterface& and appends to it. Its
// caller provides the storage: a StackBackedBuffer with the room that usually suffices, so that
// ordinary text allocates nothing. A formatter of a list reserves the room for all elements in one
// request, because a buffer larger than its step no longer doubles, and many small requests would
// reallocate often.
#ifndef OVFMT_DYNAMICBUFFER_H
#define OVFMT_DYNAMICBUFFER_H

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/Detail/Decimal.h"

namespace OvFmt {

// An appendable text in storage that a derived class provides:
//
//   begin              writePtr              endPtr
//   | text, size()     | free, room()        |          capacity() = size() + room()
//
// Pointers and views into the text are valid until the next operation that makes room. Text to be
// appended must not be in the buffer itself. One thread at a time.
//
// Errors: a request that the buffer can never satisfy (because it is not made to grow, or the size
// exceeds the address space) aborts. Running out of memory raises std::bad_alloc and leaves the
// text unchanged.
class OV_EXPORT DynamicBufferInterface {
 public:
  // Not copyable: the storage belongs to the derived object.
  DynamicBufferInterface(const DynamicBufferInterface&) = delete;
  // Not assignable, for the same reason.
  DynamicBufferInterface& operator=(const DynamicBufferInterface&) = delete;

  // Octets of text.
  std::size_t size() const { return static_cast<std::size_t>(writePtr_ - begin_); }
  // Octets of storage.
  std::size_t capacity() const { return static_cast<std::size_t>(endPtr_ - begin_); }
  // Octets that can be written before the buffer must grow.
  std::size_t room() const { return static_cast<std::size_t>(endPtr_ - writePtr_); }
  // Whether there is no text.
  bool empty() const { return writePtr_ == begin_; }
  // The text in place, without a NUL at the end.
  std::string_view view() const { return {begin_, size()}; }
  // A copy of the text.
  Kiv::String str() const { return Kiv::String(view()); }

  // Removes the text and keeps the storage.
  void clear() { writePtr_ = begin_; }

  // Makes room for `required` more octets and returns where to write them. Written octets become
  // part of the text with advance() or advanceTo().
  char* reserve(std::size_t required) {
    if (room() < required) [[unlikely]]
      return getBuffer(required);
    return writePtr_;
  }
  // Adds to the text the `written` octets that were written after reserve(). Unchecked: requires
  // written <= room().
  void advance(std::size_t written) { writePtr_ += written; }
  // Adds to the text the octets that were written from reserve()'s result up to `end`. Unchecked.
  void advanceTo(char* end) { writePtr_ = end; }

  // Appends one octet.
  void append(char c) {
    *reserve(1) = c;
    ++writePtr_;
  }
  // Appends a text, which may contain NUL octets.
  void append(std::string_view text) {
    char* const at = reserve(text.size());
    writePtr_ = at + text.copy(at, text.size());
  }

  // Appends `value` in decimal, without leading zeros. The fast path writes directly into the
  // storage; it needs a few octets more than the longest text.
  void appendDecimal(U32 value) {
    if (room() < decimalRoomU32) [[unlikely]]
      return appendDecimalTight(value);
    writePtr_ = writeDecimal(writePtr_, value);
  }
  // As above, for 64 bits.
  void appendDecimal(U64 value) {
    if (room() < decimalRoomU64) [[unlikely]]
      return appendDecimalTight(value);
    writePtr_ = writeDecimal(writePtr_, value);
  }
  // As above, for 16 bits.
  void appendDecimal(U16 value) { appendDecimal(U32{value}); }
  // As above, for 8 bits.
  void appendDecimal(U8 value) { appendDecimal(U32{value}); }

  // Appends `value` in lower-case hexadecimal, with leading zeros up to `minDigits` digits.
  void appendHex(U64 value, unsigned minDigits = 1);

  // The slow path of reserve(), when the room is too small. Call reserve() instead.
  char* getBuffer(std::size_t required);

 protected:
  // An empty text in `capacity` octets at `begin`, which belong to the derived class.
  DynamicBufferInterface(char* begin, std::size_t capacity)
      : begin_(begin), writePtr_(begin), endPtr_(begin + capacity) {}
  // Protected, because buffers are never owned through this class. Storage is released by the
  // derived class.
  virtual ~DynamicBufferInterface() = default;

  // Called when the room is less than `required`. Moves the text into larger storage and calls
  // storageIs(); or does nothing if this buffer cannot grow, and then the request aborts. May raise
  // std::bad_alloc, with the text unchanged.
  virtual void grow(std::size_t required) = 0;

  // Sets new storage, which already contains the text of size() octets.
  void storageIs(char* begin, std::size_t capacity);
  // The begin of the current storage.
  char* storage() const { return begin_; }

 private:
  // Slow path of appendDecimal: near the end of the room, reserves exactly the digits, so that a
  // buffer of fixed size can be filled completely.
  void appendDecimalTight(U64 value);

  char* begin_;
  char* writePtr_;
  char* endPtr_;
};

// The growth of stack-backed buffers, common to all inline sizes: the text moves to the heap, with
// a new capacity of max(min(2 x size, step), size + required) octets. Beyond the step, a buffer
// grows only by what is requested.
class OV_EXPORT HeapGrowingBuffer : public DynamicBufferInterface {
 protected:
  // Starts in `inlineSize` octets at `inlineArea`, which must exist as long as this object.
  HeapGrowingBuffer(char* inlineArea, std::size_t inlineSize, std::size_t step)
      : DynamicBufferInterface(inlineArea, inlineSize), inlineArea_(inlineArea), step_(step) {}
  // Inline, because formatting one community takes no longer than a call of this would.
  ~HeapGrowingBuffer() override {
    if (onHeap()) [[unlikely]]
      std::free(storage());
  }
  // Implements the growth described above; raises std::bad_alloc.
  void grow(std::size_t required) final;

 private:
  bool onHeap() const { return storage() != inlineArea_; }

  char* const inlineArea_;
  const std::size_t step_;
};

// A buffer with `InlineSize` octets inside the object, which moves to the heap when they do not
// suffice. Meant for the stack of the formatting function. `Step` is the capacity up to which the
// buffer doubles.
template <std::size_t InlineSize, std::size_t Step = 1024>
class StackBackedBuffer final : public HeapGrowingBuffer {
  static_assert(InlineSize > 0);

 public:
  // An empty text. Costs a few stores: the inline octets are not initialised.
  StackBackedBuffer() : HeapGrowingBuffer(inlineArea_, InlineSize, Step) {}

 private:
  char inlineArea_[InlineSize];  // left uninitialised: only what is written is read
};

}  // namespace OvFmt

#endif
