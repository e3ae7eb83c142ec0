// The routes of all peers, with their interned lists: the agent's side of the
// tool.
#ifndef TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H
#define TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H

#include <unordered_map>
#include <vector>

#include "OvBgp/ExtCommDedupTable.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "tools/bgp-communities/RouteKey.h"

namespace CommTool {

// What is interned of one route's communities. Values are as received: in that
// order, repeats included.
struct RouteCommunities {
  Routing::Bgp::CommList::PtrConst standard;  // null without such an attribute
  std::vector<Routing::Bgp::ExtComm::PtrConst> extended;
  std::vector<Routing::Bgp::ExtCommIp6::PtrConst> ip6Extended;
};

// Routes as they came and went.
struct RouteCounts {
  U64 announced = 0;
  U64 withdrawn = 0;  // by the peer, or because their attributes were broken
  U64 tableEntries = 0;
};

// What the lists of all routes held now amount to.
struct HeldFigures {
  U64 routes = 0;
  U64 routesWithList = 0;
  U64 lists = 0;           // as the interning table counts them
  U64 values = 0;          // distinct communities in them
  U64 extendedValues = 0;  // as their tables count them
  U64 ip6ExtendedValues = 0;
  U64 bytes = 0;          // for lists, values and their tables
  U64 bytesUnshared = 0;  // had each route its own, and no table
};

// Each announced route, and each entry of a table, holds one reference to each of
// its lists and values; a withdrawn or replaced route drops its own.  Routes differ by peer
// (address, AS, direction), address family, prefix and path identifier.
class HeldRoutes {
 public:
  HeldRoutes();

  // Does what the batch says.  The lists returned are those of each of its
  // routes; a withdrawal has none.
  RouteCommunities add(const RouteBatch& batch);

  const RouteCounts& counts() const { return counts_; }
  // Walks all routes; not for the way of the data.
  HeldFigures figures() const;
  U32 lists() const { return commLists_->size(); }

 private:
  struct PeerHash {
    std::size_t operator()(const Peer& peer) const;
  };

  RouteCommunities intern(const CommunityAttributes& communities) const;
  U32 peerNumber(const Peer& peer);
  void count(const RouteBatch& batch);

  // Before the routes, as these drop what they hold into the tables at the end.
  const Routing::Bgp::BgpParseExtCommContainerSm::Ptr parser_;
  const Routing::Bgp::CommListDedupTable::Ptr commLists_;
  const Routing::Bgp::ExtCommDedupTable::Ptr extComms_;
  const Routing::Bgp::ExtCommIp6DedupTable::Ptr extCommIp6s_;
  const U64 bytesAtFirst_;  // of parser and empty tables
  std::unordered_map<RouteKey, RouteCommunities, RouteKeyHash> routes_;
  std::unordered_map<Peer, U32, PeerHash> peers_;
  RouteCounts counts_;
};

}  // namespace CommTool

#endif
