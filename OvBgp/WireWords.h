// 32-bit words between host order and the wire, and their hash.  Private to the
// library.
#ifndef OVBGP_WIREWORDS_H
#define OVBGP_WIREWORDS_H

#include <bit>
#include <cstddef>
#include <cstring>
#include <span>

#include "Kiv/Types.h"

namespace Routing::Bgp {

// The conversion between host order and the four octets of the wire as they load
// from memory; its own inverse.
constexpr U32 wireWord(U32 host) noexcept {
  return std::endian::native == std::endian::little ? __builtin_bswap32(host) : host;
}

inline U32 wireWordAt(const U8* octets) noexcept {
  U32 word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

// Turns host order into wire order, and back.
inline void wireOrderSwap(std::span<U32> words) noexcept {
  for (U32& word : words) word = wireWord(word);
}

// A hash for the interning tables' own use, several times as fast as the byte
// hash, of `count` words as they stand on the wire, so that a received attribute
// need not be decoded. Multiplication spreads upward, the shift brings it down.
template <class WordAt>
U32 wordHash(std::size_t count, const WordAt& wordAt) noexcept {
  U64 h = count * 0x9E3779B97F4A7C15;
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    h = (h ^ (wordAt(i) | U64{wordAt(i + 1)} << 32)) * 0xBF58476D1CE4E5B9;
    h ^= h >> 29;
  }
  if (i < count) {
    h = (h ^ wordAt(i)) * 0x94D049BB133111EB;
    h ^= h >> 31;
  }
  return static_cast<U32>(h >> 32 ^ h);
}

inline U32 wireHash(std::span<const U8> octets) noexcept {
  return wordHash(octets.size() / 4,
                  [at = octets.data()](std::size_t i) { return wireWordAt(at + 4 * i); });
}

}  // namespace Routing::Bgp

#endif
