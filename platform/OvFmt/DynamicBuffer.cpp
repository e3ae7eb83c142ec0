#include "OvFmt/DynamicBuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Kiv/Assert.h"

namespace OvFmt {

char* DynamicBufferInterface::getBuffer(std::size_t required) {
  // No object is larger than PTRDIFF_MAX octets. Without this check, size() + required could wrap.
  const bool isPossible = required <= static_cast<std::size_t>(PTRDIFF_MAX) - size();
  if (room() < required && isPossible) grow(required);
  KIV_ASSERT_IN(room() >= required, "endPtr - writePtr >= ptrdiff_t( required )",
                "OvStrings/StringBuffer", "char* OvFmt::DynamicBufferInterface::getBuffer(size_t)");
  return writePtr_;
}

// size() is computed from the old pointers, so writePtr_ is set first.
void DynamicBufferInterface::storageIs(char* begin, std::size_t capacity) {
  writePtr_ = begin + size();
  begin_ = begin;
  endPtr_ = begin + capacity;
}

void DynamicBufferInterface::appendDecimalTight(U64 value) {
  const std::size_t digits = decimalDigits(value);
  char* const end = reserve(digits) + digits;
  writeDecimalBackwards(end, value);
  writePtr_ = end;
}

// `value | 1`: zero has one digit, and countl_zero of it would give none.
void DynamicBufferInterface::appendHex(U64 value, unsigned minDigits) {
  const unsigned bits = 64 - static_cast<unsigned>(std::countl_zero(value | 1));
  const unsigned digits = std::max((bits + 3) / 4, minDigits);
  char* const end = reserve(digits) + digits;
  for (char* at = end; at != writePtr_; value >>= 4) *--at = "0123456789abcdef"[value & 0xf];
  writePtr_ = end;
}

void HeapGrowingBuffer::grow(std::size_t required) {
  const std::size_t used = size();
  const std::size_t capacity = std::max(std::min(2 * used, step_), used + required);
  // realloc rather than new and copy: beyond the step a buffer grows often and by little, and
  // realloc can mostly extend the block in place. A null pointer makes realloc allocate.
  const bool wasOnHeap = onHeap();
  void* const storage = std::realloc(wasOnHeap ? this->storage() : nullptr, capacity);
  if (storage == nullptr) throw std::bad_alloc();
  if (!wasOnHeap) std::memcpy(storage, inlineArea_, used);
  storageIs(static_cast<char*>(storage), capacity);
}

}  // namespace OvFmt
