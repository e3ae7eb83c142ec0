// Hash and comparison of 32-bit words, of which one side is in wire order (big-endian) and
// the other side in host order, without decoding. Private to the library.
//
// Every received attribute runs through these two loops. They work on pairs of words, and
// the last pair may overlap the pair before it, so that no remainder is handled apart.
#ifndef OVBGP_LIST_PRIVATE_WIREWORDS_H
#define OVBGP_LIST_PRIVATE_WIREWORDS_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <span>

#include "Kiv/Hash.h"
#include "Kiv/Inline.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// Converts a word from host order to wire order or back; the conversion is its own inverse.
constexpr U32 wireWord(U32 host) noexcept {
  return std::endian::native == std::endian::little ? __builtin_bswap32(host) : host;
}

// The four octets at `octets`, at any alignment, as they are in memory.
inline U32 wireWordAt(const U8* octets) noexcept {
  U32 word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

// Loads words in wire order from memory in wire order. pairAt loads two words, wordAt loads one.
struct WireOrder {
  static U64 pairAt(const U8* at) noexcept {
    U64 pair = 0;
    std::memcpy(&pair, at, sizeof pair);
    return pair;
  }
  static U32 wordAt(const U8* at) noexcept { return wireWordAt(at); }
};

// Loads words in wire order from memory in host order.
struct HostOrder {
  static U64 pairAt(const U8* at) noexcept {
    const U64 pair = WireOrder::pairAt(at);
    if (std::endian::native != std::endian::little) return pair;
    // Swapping all eight octets also exchanges the two words; the rotation undoes that.
    return std::rotl(__builtin_bswap64(pair), 32);
  }
  static U32 wordAt(const U8* at) noexcept { return wireWord(wireWordAt(at)); }
};

// Calls `use(i, j)` with the offsets of two pairs of words at a time, so that the pairs cover all
// `octets`. Requires: at least eight octets. The pairs of the last call may overlap earlier pairs.
// Therefore there is one branch for each 16 octets, and none for a remainder. This saves time
// because lists have few words, so that one mispredicted loop exit costs more than the loop.
template <class Use>
KIV_INLINE void forPairs(std::size_t octets, const Use& use) noexcept {
  const std::size_t last = octets - 8;
  std::size_t i = 0;
  for (; i + 16 < octets; i += 16) use(i, i + 8);
  use(std::min(i, last), last);
}

// The hash that the interning tables probe with. It is defined on the wire order of the
// words, so that a received attribute need not be decoded. It is keyed by a secret of the
// process, so that a sender of attributes cannot construct collisions. The length enters
// the hash first, because overlapping pairs alone do not determine it.
template <class Order>
KIV_INLINE U32 wordHash(const U8* at, std::size_t octets) noexcept {
  const Kiv::HashKey key = Kiv::hashKey;
  U64 h = key.mask ^ octets * key.factor;
  const auto add = [&h, &key ](U64 first, U64 second) __attribute__((always_inline)) {
    h = Kiv::foldedProduct(h ^ first, key.factor ^ second);
  };
  if (octets < 8) {
    add(octets == 0 ? 0 : Order::wordAt(at), 0);
  } else {
    forPairs(
        octets, [&](std::size_t i, std::size_t j) __attribute__((always_inline)) {
          add(Order::pairAt(at + i), Order::pairAt(at + j));
        });
  }
  return static_cast<U32>(h);
}

// wordHash of words that are in wire order.
KIV_INLINE U32 wireHash(std::span<const U8> octets) noexcept {
  return wordHash<WireOrder>(octets.data(), octets.size());
}

// Whether `octets` octets of words, at `wire` in wire order and at `host` in host order, are
// equal. The hashes were equal before, so the words nearly always are. The comparison
// therefore never stops early, which saves a branch for each pair.
KIV_INLINE bool wireEqualsHost(const U8* wire, const U8* host, std::size_t octets) noexcept {
  if (octets < 8) return octets == 0 || WireOrder::wordAt(wire) == HostOrder::wordAt(host);
  U64 differences = 0;
  forPairs(
      octets, [&](std::size_t i, std::size_t j) __attribute__((always_inline)) {
        differences |= WireOrder::pairAt(wire + i) ^ HostOrder::pairAt(host + i);
        differences |= WireOrder::pairAt(wire + j) ^ HostOrder::pairAt(host + j);
      });
  return differences == 0;
}

}  // namespace Routing::Bgp

#endif
