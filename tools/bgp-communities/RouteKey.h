// What tells the routes of an agent apart, as a key of hash tables.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_KEY_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_KEY_H

#include <array>
#include <bit>
#include <random>

#include "tools/bgp-communities/Route.h"

namespace CommTool {

// What tells one route from another.
class RouteKey {
 public:
  RouteKey(U32 peer, const Nlri& nlri)
      : network_(nlri.prefix.network.octets),
        peer_(peer),
        pathId_(nlri.pathId.value_or(0)),
        length_(nlri.prefix.length),
        kind_(static_cast<U8>((nlri.prefix.network.family == Family::ipv6 ? 1 : 0) |
                              (nlri.prefix.multicast ? 2 : 0) | (nlri.pathId ? 4 : 0))) {}

  U64 hash(U64 seed) const {
    const auto halves = std::bit_cast<std::array<U64, 2>>(network_);
    U64 h = mixed(mixed(seed, halves[0]), halves[1]);
    h = mixed(h, U64(peer_) << 32 | pathId_);
    return mixed(h, U64(length_) << 8 | kind_);
  }

  friend bool operator==(const RouteKey&, const RouteKey&) = default;

 private:
  // Stirs a word into the hash; the shifts bring high bits down to where the
  // multiplication spreads them again.
  static U64 mixed(U64 hash, U64 word) {
    hash = (hash ^ word) * 0x9e3779b97f4a7c15U;
    return hash ^ hash >> 32;
  }

  std::array<U8, 16> network_{};
  U32 peer_ = 0;
  U32 pathId_ = 0;
  U8 length_ = 0;
  U8 kind_ = 0;
};

// The seed is drawn anew for each table, so that no file can be made whose routes
// all collide.
class RouteKeyHash {
 public:
  std::size_t operator()(const RouteKey& key) const {
    return static_cast<std::size_t>(key.hash(seed_));
  }

 private:
  static U64 newSeed() {
    std::random_device device;
    return U64(device()) << 32 | device();
  }

  U64 seed_ = newSeed();
};

}  // namespace CommTool

#endif
