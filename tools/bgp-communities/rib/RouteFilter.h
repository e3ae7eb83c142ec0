// Selection of routes by prefix, peer and kind of community, and parsing of these criteria.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_ROUTE_FILTER_H
#define TOOLS_BGP_COMMUNITIES_RIB_ROUTE_FILTER_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/bgp-communities/bgp/Route.h"

namespace CommTool {

// Parses a prefix such as "192.0.2.0/24" or "2001:db8::/32". An address alone is a prefix of full
// length. Nothing for any other text, and for a prefix with host bits set.
std::optional<Prefix> readPrefixText(std::string_view text);

// The reason why readPrefixText() does not accept `text`, and the prefix that may be meant instead.
// For error messages.
std::string prefixTextProblem(const std::string& text);

// Parses an AS number in decimal (asplain) or as two 16-bit numbers with a period between (asdot).
std::optional<U32> readAsText(std::string_view text);

// Whether `inner` equals `outer` or is more specific. Unicast and multicast are not distinguished.
bool isWithin(const Prefix& inner, const Prefix& outer);

// The criteria, all of which a route must meet.
struct RouteFilter {
  // Keep only routes with communities of these kinds, and only these kinds of them.
  std::optional<KindSet> kinds;
  // Keep only routes to this prefix or a more specific one.
  std::optional<Prefix> within;
  // Keep only routes of peers with this AS number.
  std::optional<U32> peerAs;

  // Whether routes of this peer may pass.
  bool wantsPeer(const Peer& peer) const { return !peerAs || peer.as == *peerAs; }
  // Returns the routes of the batch that pass by their prefix. They are copied to `room` if not all
  // pass, so the result is valid as long as the batch and the contents of `room`.
  std::span<const Nlri> wantedOf(const RouteBatch& batch, std::vector<Nlri>& room) const;
};

}  // namespace CommTool

#endif
