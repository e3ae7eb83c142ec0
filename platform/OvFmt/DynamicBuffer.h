// Text buffers: where text of unknown length is put together, such as the line
// that a policy matches.
//
// A formatter is an ordinary function that takes a DynamicBufferInterface& and
// appends; its caller brings the storage, a StackBackedBuffer with the room that
// usually suffices.  Lists reserve what they need in one request, since a buffer
// beyond its step grows only by what is asked of it.
#ifndef OVFMT_DYNAMICBUFFER_H
#define OVFMT_DYNAMICBUFFER_H

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/Decimal.h"

namespace OvFmt {

// A text sink over [begin, writePtr, endPtr): text so far, then free room.
//
// Pointers and views into the text hold until the next operation that makes room.
// Text appended must not come from the buffer itself.  One thread at a time.
//
// Failures: a request that the buffer cannot provide at all (one that is not made
// to grow, or a size beyond the address space) aborts; running out of memory
// raises std::bad_alloc and leaves the text as it was.
class OV_EXPORT DynamicBufferInterface {
 public:
  DynamicBufferInterface(const DynamicBufferInterface&) = delete;
  DynamicBufferInterface& operator=(const DynamicBufferInterface&) = delete;

  std::size_t size() const { return static_cast<std::size_t>(writePtr_ - begin_); }
  std::size_t capacity() const { return static_cast<std::size_t>(endPtr_ - begin_); }
  std::size_t room() const { return static_cast<std::size_t>(endPtr_ - writePtr_); }
  bool empty() const { return writePtr_ == begin_; }
  std::string_view view() const { return {begin_, size()}; }
  Kiv::String str() const { return Kiv::String(view()); }

  // Forgets the text and keeps the room.
  void clear() { writePtr_ = begin_; }

  // Makes room for `required` more octets and returns the place to write them;
  // they become part of the text with advance or advanceTo.
  char* reserve(std::size_t required) {
    if (room() < required) [[unlikely]]
      return getBuffer(required);
    return writePtr_;
  }
  // Takes in what was written after reserve: `written` octets, or those before `end`.
  void advance(std::size_t written) { writePtr_ += written; }
  void advanceTo(char* end) { writePtr_ = end; }

  void append(char c) {
    *reserve(1) = c;
    ++writePtr_;
  }
  void append(std::string_view text) {
    char* const at = reserve(text.size());
    writePtr_ = at + text.copy(at, text.size());
  }

  void appendDecimal(U32 value) {
    if (room() < decimalRoomU32) [[unlikely]]
      return appendDecimalTight(value);
    writePtr_ = writeDecimal(writePtr_, value);
  }
  void appendDecimal(U64 value) {
    if (room() < decimalRoomU64) [[unlikely]]
      return appendDecimalTight(value);
    writePtr_ = writeDecimal(writePtr_, value);
  }
  void appendDecimal(U16 value) { appendDecimal(U32{value}); }
  void appendDecimal(U8 value) { appendDecimal(U32{value}); }

  // Appends `value` in lower-case hexadecimal, with zeros in front up to `minDigits`.
  void appendHex(U64 value, unsigned minDigits = 1);

  // What reserve does when the room at hand does not suffice.
  char* getBuffer(std::size_t required);

 protected:
  DynamicBufferInterface(char* begin, std::size_t capacity)
      : begin_(begin), writePtr_(begin), endPtr_(begin + capacity) {}
  virtual ~DynamicBufferInterface() = default;

  // Called when the room is less than `required`: moves the text into larger
  // storage through storageIs, or does nothing if this buffer cannot provide it.
  // May raise std::bad_alloc, changing nothing.
  virtual void grow(std::size_t required) = 0;

  // New storage that already holds the text of size() octets.
  void storageIs(char* begin, std::size_t capacity);
  char* storage() const { return begin_; }

 private:
  // For the last octets of the room: asks for exactly the digits.
  void appendDecimalTight(U64 value);

  char* begin_;
  char* writePtr_;
  char* endPtr_;
};

// The growth of a stack-backed buffer, whatever its inline size: to the heap,
// where the new capacity is max(min(2 x used, step), used + required).
class OV_EXPORT HeapGrowingBuffer : public DynamicBufferInterface {
 protected:
  HeapGrowingBuffer(char* inlineArea, std::size_t inlineSize, std::size_t step)
      : DynamicBufferInterface(inlineArea, inlineSize), inlineArea_(inlineArea), step_(step) {}
  // In sight of callers, as the text of one community takes no longer than a call.
  ~HeapGrowingBuffer() override {
    if (onHeap()) [[unlikely]]
      std::free(storage());
  }
  void grow(std::size_t required) final;

 private:
  bool onHeap() const { return storage() != inlineArea_; }

  char* const inlineArea_;
  const std::size_t step_;
};

// A buffer with `InlineSize` octets in place, which then moves to the heap.
template <std::size_t InlineSize, std::size_t Step = 1024>
class StackBackedBuffer final : public HeapGrowingBuffer {
  static_assert(InlineSize > 0);

 public:
  StackBackedBuffer() : HeapGrowingBuffer(inlineArea_, InlineSize, Step) {}

 private:
  char inlineArea_[InlineSize];  // left uninitialised: only what is written is read
};

}  // namespace OvFmt

#endif
