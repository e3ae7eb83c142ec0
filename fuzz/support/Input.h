// The octets of a fuzz target's input, taken one after the other.
#ifndef FUZZ_SUPPORT_INPUT_H
#define FUZZ_SUPPORT_INPUT_H

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "Kiv/Types.h"

namespace Fuzz {

// Borrowed octets. Past their end there are zeros, so that every input says all that
// is asked for; a target's loop asks atEnd().
class Input {
 public:
  Input(const U8* data, std::size_t size) : left_(data, size) {}

  bool atEnd() const { return left_.empty(); }
  std::size_t left() const { return left_.size(); }

  U8 u8() { return static_cast<U8>(number(1)); }
  U16 u16() { return static_cast<U16>(number(2)); }
  U32 u32() { return static_cast<U32>(number(4)); }
  U64 u64() { return number(8); }
  bool flag() { return (u8() & 1) != 0; }
  // Less than `bound`, which is at most 256.
  U32 below(std::size_t bound) { return static_cast<U32>(u8() % bound); }

  // The next `count` octets, or fewer at the end.
  std::span<const U8> octets(std::size_t count) {
    const auto taken = left_.first(std::min(count, left_.size()));
    left_ = left_.subspan(taken.size());
    return taken;
  }
  std::span<const U8> rest() { return octets(left()); }
  // What stands before `end`, which is passed over, or all that is left.
  std::string_view textUpTo(char end) {
    const std::string_view all(reinterpret_cast<const char*>(left_.data()), left_.size());
    const std::string_view text = all.substr(0, all.find(end));
    octets(text.size() + 1);
    return text;
  }
  std::string_view text() {
    const auto all = rest();
    return {reinterpret_cast<const char*>(all.data()), all.size()};
  }

 private:
  U64 number(std::size_t size) {
    U64 value = 0;
    for (const U8 octet : octets(size)) value = value << 8 | octet;
    return value;
  }

  std::span<const U8> left_;
};

}  // namespace Fuzz

#endif
