// Decimal digits of unsigned integers, written directly into memory.
//
// Implementation detail of OvFmt/DynamicBuffer.h, which includes this header. Formatters of lists
// use it as well, after they have reserved room for all numbers at once. To append one number to a
// buffer, use DynamicBufferInterface::appendDecimal.
//
// Text of communities is mostly numbers, so their conversion decides how fast it is. Three digits
// are converted at a time by a table of 1,000 entries (4 KiB), which replaces two divisions. All
// functions here may be called by any thread, allocate nothing and raise nothing.
#ifndef OVFMT_DETAIL_DECIMAL_H
#define OVFMT_DETAIL_DECIMAL_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "Kiv/Types.h"

namespace OvFmt {

// Octets that writeDecimal of a U16 may overwrite, and so the room that its caller must have. More
// than the longest text, because up to six digits are stored as eight octets.
inline constexpr std::size_t decimalRoomU16 = 8;
// The same of a U32: one octet more than the digits, because three digits are stored as four
// octets.
inline constexpr std::size_t decimalRoomU32 = 11;
// The same of a U64.
inline constexpr std::size_t decimalRoomU64 = 21;

// Octets of the longest text of a U16; for computing the room for a list.
inline constexpr std::size_t decimalDigitsMaxU16 = 5;
// Octets of the longest text of a U32.
inline constexpr std::size_t decimalDigitsMaxU32 = 10;
// Octets of the longest text of a U64.
inline constexpr std::size_t decimalDigitsMaxU64 = 20;

namespace Detail {

// The table of digits. Entry i, for i below 1000:
//
//   bits 0..7: first digit | 8..15: second digit | 16..23: third digit | 24..31: leading zeros
//
// The digits are characters. 000 has two leading zeros, because its last digit is always shown.
struct ThreeDigits {
  U32 entries[1000];
};
constexpr ThreeDigits makeThreeDigits() {
  ThreeDigits table{};
  for (U32 i = 0; i < 1000; ++i) {
    const U32 digits = ('0' + i / 100) | ('0' + i / 10 % 10) << 8 | ('0' + i % 10) << 16;
    const U32 zeros = i >= 100 ? 0 : i >= 10 ? 1 : 2;
    table.entries[i] = digits | zeros << 24;
  }
  return table;
}
inline constexpr ThreeDigits threeDigits = makeThreeDigits();

// Stores four octets, the lowest octet of the number first, on any machine.
inline void storeFour(char* at, U32 octets) {
  if constexpr (std::endian::native == std::endian::big) octets = __builtin_bswap32(octets);
  std::memcpy(at, &octets, sizeof octets);
}
// Stores eight octets in the same way.
inline void storeEight(char* at, U64 octets) {
  if constexpr (std::endian::native == std::endian::big) octets = __builtin_bswap64(octets);
  std::memcpy(at, &octets, sizeof octets);
}

// Writes `value` < 1000 as three digits and returns the end. Overwrites four octets.
inline char* writeGroup(char* at, U32 value) {
  storeFour(at, threeDigits.entries[value]);
  return at + 3;
}
// Writes `value` < 1000 without leading zeros and returns the end. Overwrites four octets.
inline char* writeFirstGroup(char* at, U32 value) {
  const U32 entry = threeDigits.entries[value];
  const U32 zeros = entry >> 24;
  storeFour(at, entry >> (8 * zeros));
  return at + (3 - zeros);
}

}  // namespace Detail

// Writes `value` in decimal at `at` and returns the end of the text. Adds no NUL. Up to
// decimalRoomU16 octets from `at` are overwritten; those behind the returned end have no meaning.
//
// Without a branch, because the halves of communities differ in length and the branch would be
// mispredicted: six digits are put together in one word, and leading zeros are shifted out.
inline char* writeDecimal(char* at, U16 value) {
  const U32 thousands = value / 1000U;
  const U32 first = Detail::threeDigits.entries[thousands];
  const U32 last = Detail::threeDigits.entries[value - thousands * 1000U];
  const U32 zeros = thousands != 0 ? first >> 24 : 3 + (last >> 24);
  // The zero counts in the highest octets are masked out or end up behind the text.
  const U64 digits = (first & 0xFFFFFF) | U64{last} << 24;
  Detail::storeEight(at, digits >> (8 * zeros));
  return at + (6 - zeros);
}

// As above, for 32 bits and decimalRoomU32 octets. With branches by magnitude, because ten digits
// do not fit one word.
inline char* writeDecimal(char* at, U32 value) {
  constexpr U32 million = 1'000'000;
  if (value < 1000) return Detail::writeFirstGroup(at, value);
  if (value < million) {
    at = Detail::writeFirstGroup(at, value / 1000);
    return Detail::writeGroup(at, value % 1000);
  }
  const U32 millions = value / million;
  const U32 rest = value % million;
  if (millions < 1000) {
    at = Detail::writeFirstGroup(at, millions);
  } else {
    *at++ = static_cast<char>('0' + millions / 1000);
    at = Detail::writeGroup(at, millions % 1000);
  }
  at = Detail::writeGroup(at, rest / 1000);
  return Detail::writeGroup(at, rest % 1000);
}

// As above, for 64 bits and decimalRoomU64 octets. Recurses for the upper digits, twice at most.
inline char* writeDecimal(char* at, U64 value) {
  if (value <= 0xffffffffU) return writeDecimal(at, static_cast<U32>(value));
  constexpr U64 billion = 1'000'000'000;
  at = writeDecimal(at, value / billion);
  const U32 rest = static_cast<U32>(value % billion);
  at = Detail::writeGroup(at, rest / 1'000'000);
  at = Detail::writeGroup(at, rest / 1000 % 1000);
  return Detail::writeGroup(at, rest % 1000);
}

// Number of decimal digits of `value`; 1 for 0. The number of bits leaves two answers (1233 / 4096
// approximates log10(2)), and one comparison decides. Without a branch, because the numbers of a
// list differ in length.
inline std::size_t decimalDigits(U32 value) {
  static constexpr std::array<U32, 10> powersOfTen{
      1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
  const auto lower = static_cast<U32>(std::bit_width(value | 1)) * 1233 >> 12;
  return lower + ((value | 1) >= powersOfTen[lower]);
}
// As above, for 64 bits; four digits per step.
inline std::size_t decimalDigits(U64 value) {
  std::size_t digits = 1;
  for (; value >= 10000; value /= 10000) digits += 4;
  return digits + (value >= 10) + (value >= 100) + (value >= 1000);
}

// Writes `value` so that its last digit is directly before `end`, and overwrites nothing but its
// digits. Returns the place of the first digit, `end - decimalDigits(value)`. Slower than
// writeDecimal; for places without room behind the text.
inline char* writeDecimalBackwards(char* end, U64 value) {
  do {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  return end;
}

}  // namespace OvFmt

#endif
