// Decimal digits of unsigned integers, written straight into memory.
//
// For callers that have made room for a whole list and now write many numbers.
// To append one number to a text buffer, use DynamicBufferInterface::appendDecimal.
#ifndef OVFMT_DECIMAL_H
#define OVFMT_DECIMAL_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "Kiv/Types.h"

namespace OvFmt {

// The octets from its first argument on that writeDecimal may touch, and so the
// room its caller must have: more than the longest text, because three digits are
// stored as four octets, and five as eight.
inline constexpr std::size_t decimalRoomU16 = 8;
inline constexpr std::size_t decimalRoomU32 = 11;
inline constexpr std::size_t decimalRoomU64 = 21;

// The longest text of each, in octets; for reserving room for a list.
inline constexpr std::size_t decimalDigitsMaxU16 = 5;
inline constexpr std::size_t decimalDigitsMaxU32 = 10;
inline constexpr std::size_t decimalDigitsMaxU64 = 20;

namespace Detail {

// Numbers are written three digits at a time.  An entry holds the three digits of
// its index, the first one in the lowest octet, and in the highest octet the
// number of zeros in front (000 has two: its last digit stays).
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

// Store octets, the lowest one first.
inline void storeFour(char* at, U32 octets) {
  if constexpr (std::endian::native == std::endian::big) octets = __builtin_bswap32(octets);
  std::memcpy(at, &octets, sizeof octets);
}
inline void storeEight(char* at, U64 octets) {
  if constexpr (std::endian::native == std::endian::big) octets = __builtin_bswap64(octets);
  std::memcpy(at, &octets, sizeof octets);
}

// `value` < 1000, as three digits, and without zeros in front.
inline char* writeGroup(char* at, U32 value) {
  storeFour(at, threeDigits.entries[value]);
  return at + 3;
}
inline char* writeFirstGroup(char* at, U32 value) {
  const U32 entry = threeDigits.entries[value];
  const U32 zeros = entry >> 24;
  storeFour(at, entry >> (8 * zeros));
  return at + (3 - zeros);
}

}  // namespace Detail

// Writes `value` in decimal at `at` and returns the end of the text.  No NUL is
// added.  Up to decimalRoom... octets from `at` are overwritten; those after the
// returned end are left with no meaning.
//
// Of 16 bits without a branch, as the halves of communities differ in length: six
// digits are put together, then those in front that are zero shifted out.
inline char* writeDecimal(char* at, U16 value) {
  const U32 thousands = value / 1000U;
  const U32 first = Detail::threeDigits.entries[thousands];
  const U32 last = Detail::threeDigits.entries[value - thousands * 1000U];
  const U32 zeros = thousands != 0 ? first >> 24 : 3 + (last >> 24);
  const U64 digits = (first & 0xFFFFFF) | U64{last} << 24;
  Detail::storeEight(at, digits >> (8 * zeros));
  return at + (6 - zeros);
}

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

inline char* writeDecimal(char* at, U64 value) {
  if (value <= 0xffffffffU) return writeDecimal(at, static_cast<U32>(value));
  constexpr U64 billion = 1'000'000'000;
  at = writeDecimal(at, value / billion);
  const U32 rest = static_cast<U32>(value % billion);
  at = Detail::writeGroup(at, rest / 1'000'000);
  at = Detail::writeGroup(at, rest / 1000 % 1000);
  return Detail::writeGroup(at, rest % 1000);
}

// Number of decimal digits of `value`; 1 for 0.  From the number of bits, which
// leaves two answers, and a comparison; without a branch, as the numbers of a list
// differ in length.
inline std::size_t decimalDigits(U32 value) {
  static constexpr std::array<U32, 10> powersOfTen{
      1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
  const auto lower = static_cast<U32>(std::bit_width(value | 1)) * 1233 >> 12;
  return lower + ((value | 1) >= powersOfTen[lower]);
}
inline std::size_t decimalDigits(U64 value) {
  std::size_t digits = 1;
  for (; value >= 10000; value /= 10000) digits += 4;
  return digits + (value >= 10) + (value >= 100) + (value >= 1000);
}

// Writes `value` so that its last digit stands before `end`, from there
// backwards, and touches nothing else.  Returns the first digit's place, which is
// `end - decimalDigits(value)`.
inline char* writeDecimalBackwards(char* end, U64 value) {
  do {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  return end;
}

}  // namespace OvFmt

#endif
