// The data types of a decoded route, and the interface that receives routes.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_ROUTE_H
#define TOOLS_BGP_COMMUNITIES_BGP_ROUTE_H

#include <array>
#include <compare>
#include <optional>
#include <span>

#include "tools/bgp-communities/bgp/CommunityKinds.h"

namespace CommTool {

// The address families that the tool decodes.
enum class Family : U8 { ipv4, ipv6 };

// The size of an address of the family, in octets.
constexpr std::size_t octetsOf(Family family) { return family == Family::ipv4 ? 4 : 16; }

// An IPv4 or IPv6 address.
struct Address {
  // In network byte order. An IPv4 address uses the first four; the others are zero.
  std::array<U8, 16> octets{};
  // Decides how many octets are used.
  Family family = Family::ipv4;

  // Whether family and octets are equal.
  friend bool operator==(const Address&, const Address&) = default;
};

// A destination prefix. The bits behind `length` are always zero; decoders clear what a sender left
// there, so that equal prefixes compare equal.
struct Prefix {
  // The address, with the host bits cleared.
  Address network;
  // In bits, at most those of the family.
  U8 length = 0;
  // Whether the route is of SAFI 2 (multicast RPF) and not of SAFI 1 (unicast).
  bool multicast = false;

  // Whether network, length and SAFI are equal.
  friend bool operator==(const Prefix&, const Prefix&) = default;
};

// Network Layer Reachability Information: one destination of a route.
struct Nlri {
  // The destination.
  Prefix prefix;
  // The path identifier, if the session uses ADD-PATH (RFC 7911). Without ADD-PATH there is none,
  // which differs from an identifier of 0.
  std::optional<U32> pathId;

  // Whether prefix and path identifier are equal.
  friend bool operator==(const Nlri&, const Nlri&) = default;
};

// The BGP peer of the collector that a route belongs to.
struct Peer {
  // The address of the peer.
  Address address;
  // The AS number of the peer.
  U32 as = 0;
  // Whether the collector sent the route to this peer (RFC 6396, section 4.4: the _LOCAL subtypes)
  // and did not receive it from there.
  bool local = false;

  // Whether address, AS number and direction are equal.
  friend bool operator==(const Peer&, const Peer&) = default;
};

// What happens to the routes of a batch. The values are the letters that `--routes` prints.
enum class RouteAction : char { announce = 'A', withdraw = 'W', tableEntry = 'B' };

// Routes that share everything but their destination: the announced or the withdrawn routes of one
// UPDATE message, or one entry of a dumped table. All spans are borrowed for the call that delivers
// the batch.
struct RouteBatch {
  // The time of the MRT record, in seconds since 1970 UTC.
  U32 seconds = 0;
  // Whether the routes are announced, withdrawn or dumped.
  RouteAction action = RouteAction::announce;
  // The peer that all routes of the batch belong to.
  Peer peer;
  // The community attributes of all routes of the batch; empty for withdrawals.
  CommunityAttributes communities;
  // The destinations, in the order of the data.
  std::span<const Nlri> routes;
};

// The receiver of decoded routes.
class RouteSink {
 public:
  virtual ~RouteSink() = default;
  // Called once for each batch, in the order of the data, on the thread that reads. An exception
  // ends the reading.
  virtual void handleRoutes(const RouteBatch& batch) = 0;
};

}  // namespace CommTool

#endif
