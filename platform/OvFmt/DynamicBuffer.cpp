#include "OvFmt/DynamicBuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Kiv/Assert.h"

namespace OvFmt {

char* DynamicBufferInterface::getBuffer(std::size_t required) {
  // No buffer is larger than PTRDIFF_MAX, so such a request is never worth trying.
  const bool isPossible = required <= static_cast<std::size_t>(PTRDIFF_MAX) - size();
  if (room() < required && isPossible) grow(required);
  KIV_ASSERT_IN(room() >= required, "endPtr - writePtr >= ptrdiff_t( required )",
                "OvStrings/StringBuffer", "char* OvFmt::DynamicBufferInterface::getBuffer(size_t)");
  return writePtr_;
}

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
  // Reallocated in place where the heap allows: past the step, growth is in small pieces.
  const bool wasOnHeap = onHeap();
  void* const storage = std::realloc(wasOnHeap ? this->storage() : nullptr, capacity);
  if (storage == nullptr) throw std::bad_alloc();
  if (!wasOnHeap) std::memcpy(storage, inlineArea_, used);
  storageIs(static_cast<char*>(storage), capacity);
}

}  // namespace OvFmt
