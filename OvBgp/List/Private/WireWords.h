// 32-bit words between host order and the wire, and their hash.  Private to the
// library.
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

// Two words at a time, as they are on the wire, from where they stand as on the wire.
struct WireOrder {
  static U64 pairAt(const U8* at) noexcept {
    U64 pair = 0;
    std::memcpy(&pair, at, sizeof pair);
    return pair;
  }
  static U32 wordAt(const U8* at) noexcept { return wireWordAt(at); }
};

// The same from where they stand in host order.
struct HostOrder {
  static U64 pairAt(const U8* at) noexcept {
    const U64 pair = WireOrder::pairAt(at);
    if (std::endian::native != std::endian::little) return pair;
    return std::rotl(__builtin_bswap64(pair), 32);
  }
  static U32 wordAt(const U8* at) noexcept { return wireWord(wireWordAt(at)); }
};

// Calls `use(i, j)` with the offsets of pairs of words that cover all `octets`, at least
// eight. The last call's overlap what came before, so that there is one branch for each
// 16 octets and none for what is left: lists have few words, and a loop whose end is not
// foreseen costs more than its body.
template <class Use>
KIV_INLINE void forPairs(std::size_t octets, const Use& use) noexcept {
  const std::size_t last = octets - 8;
  std::size_t i = 0;
  for (; i + 16 < octets; i += 16) use(i, i + 8);
  use(std::min(i, last), last);
}

// A hash for the interning tables' own use, of words as they stand on the wire, so that
// a received attribute need not be decoded. Whoever sends it does not know the key.
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

KIV_INLINE U32 wireHash(std::span<const U8> octets) noexcept {
  return wordHash<WireOrder>(octets.data(), octets.size());
}

// Whether so many octets of words on the wire are those in host order. Never stops
// early, as the answer mostly is yes.
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
