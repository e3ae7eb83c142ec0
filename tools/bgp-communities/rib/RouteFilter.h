// Which routes of the input count.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_FILTER_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_FILTER_H

#include <optional>
#include <string_view>
#include <vector>

#include "tools/bgp-communities/Route.h"

namespace CommTool {

// "192.0.2.0/24" or "2001:db8::/32"; an address alone is a prefix of full length.
// Nothing for any other text, and for one with bits behind its length.
std::optional<Prefix> readPrefixText(std::string_view text);

// An AS number, in decimal or as two halves with a period between.
std::optional<U32> readAsText(std::string_view text);

// Whether `inner` is `outer` or lies in it; unicast and multicast alike.
bool isWithin(const Prefix& inner, const Prefix& outer);

struct RouteFilter {
  std::optional<KindSet> kinds;  // routes with a list of one of these, and those alone
  std::optional<Prefix> within;  // routes to this prefix or a part of it
  std::optional<U32> peerAs;     // routes of peers with this AS number

  bool wantsPeer(const Peer& peer) const { return !peerAs || peer.as == *peerAs; }
  // The routes of the batch that are wanted by their prefix. May be put into `room`,
  // and live as long as that and the batch.
  std::span<const Nlri> wantedOf(const RouteBatch& batch, std::vector<Nlri>& room) const;
};

}  // namespace CommTool

#endif
