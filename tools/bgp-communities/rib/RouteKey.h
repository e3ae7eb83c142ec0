// The identity of a route, as a key of hash tables.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_ROUTE_KEY_H
#define TOOLS_BGP_COMMUNITIES_RIB_ROUTE_KEY_H

#include <array>
#include <bit>

#include "Kiv/Hash.h"
#include "tools/bgp-communities/bgp/Route.h"

namespace CommTool {

// Peer, address family, prefix and path identifier in 26 octets. Routes with equal keys replace
// each other.
class RouteKey {
 public:
  // `peer` is the number that HeldRoutes gave to the peer.
  RouteKey(U32 peer, const Nlri& nlri)
      : network_(nlri.prefix.network.octets),
        peer_(peer),
        pathId_(nlri.pathId.value_or(0)),
        length_(nlri.prefix.length),
        kind_(static_cast<U8>((nlri.prefix.network.family == Family::ipv6 ? 1 : 0) |
                              (nlri.prefix.multicast ? 2 : 0) | (nlri.pathId ? 4 : 0))) {}

  // Keyed with secret random numbers of the process, so that nobody can make a file whose routes
  // all collide. The steps are folded multiplies (see Kiv/Hash.h).
  U64 hash() const {
    const auto halves = std::bit_cast<std::array<U64, 2>>(network_);
    const Kiv::HashKey key = Kiv::hashKey;
    const U64 h = Kiv::foldedProduct(key.mask ^ halves[0], key.factor ^ halves[1]);
    return Kiv::foldedProduct(h ^ (U64{peer_} << 32 | pathId_),
                              key.factor ^ (U64{length_} << 8 | kind_));
  }

  // Whether the keys identify the same route.
  friend bool operator==(const RouteKey&, const RouteKey&) = default;

 private:
  std::array<U8, 16> network_{};
  U32 peer_ = 0;
  U32 pathId_ = 0;
  U8 length_ = 0;
  U8 kind_ = 0;  // bit 0: IPv6, bit 1: multicast, bit 2: has a path identifier
};

}  // namespace CommTool

#endif
