// Routes as the decoders deliver them: what all who use them have in common.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_H

#include <array>
#include <compare>
#include <optional>
#include <span>

#include "tools/bgp-communities/CommunityKinds.h"

namespace CommTool {

enum class Family : U8 { ipv4, ipv6 };

constexpr std::size_t octetsOf(Family family) { return family == Family::ipv4 ? 4 : 16; }

// Network order; the octets past the family's own are zero.
struct Address {
  std::array<U8, 16> octets{};
  Family family = Family::ipv4;

  friend bool operator==(const Address&, const Address&) = default;
};

// Bits past `length` are zero, whatever the sender left there.
struct Prefix {
  Address network;
  U8 length = 0;
  bool multicast = false;  // SAFI 2 rather than 1

  friend bool operator==(const Prefix&, const Prefix&) = default;
};

// One destination, with the path identifier of RFC 7911 where the data has one.
struct Nlri {
  Prefix prefix;
  std::optional<U32> pathId;

  friend bool operator==(const Nlri&, const Nlri&) = default;
};

// Whom routes come from, or, if `local`, whom the collector sent them to.
struct Peer {
  Address address;
  U32 as = 0;
  bool local = false;

  friend bool operator==(const Peer&, const Peer&) = default;
};

// The values are the letters of the output.
enum class RouteAction : char { announce = 'A', withdraw = 'W', tableEntry = 'B' };

// Routes that share everything but their destination: those of one UPDATE, or
// one entry of a table.  Everything is borrowed for the call that delivers it.
struct RouteBatch {
  U32 seconds = 0;  // of the record
  RouteAction action = RouteAction::announce;
  Peer peer;
  CommunityAttributes communities;  // empty for withdrawals
  std::span<const Nlri> routes;
};

// Who takes routes.  One call a batch, in the order of the data.
class RouteSink {
 public:
  virtual ~RouteSink() = default;
  virtual void handleRoutes(const RouteBatch& batch) = 0;
};

}  // namespace CommTool

#endif
