// The routes of all peers, with their interned lists: the agent's side of the
// tool.
#ifndef TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H
#define TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H

#include <unordered_map>

#include "OvBgp/OvBgpCommunityList.h"
#include "tools/bgp-communities/RouteKey.h"

namespace CommTool {

// The interned lists of one route; null where it has no such attribute.
struct RouteLists {
  Routing::Bgp::CommList::PtrConst standard;
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
  U64 lists = 0;          // as the interning table counts them
  U64 values = 0;         // distinct communities in them
  U64 bytes = 0;          // for them and their table, in the whole process
  U64 bytesUnshared = 0;  // had each route lists of its own, and no table
};

// Each announced route, and each entry of a table, holds one reference to a
// list; a withdrawn or replaced route drops its own.  Routes differ by peer
// (address, AS, direction), address family, prefix and path identifier.
class HeldRoutes {
 public:
  HeldRoutes();

  // Does what the batch says.  The lists returned are those of each of its
  // routes, null for withdrawals.
  RouteLists add(const RouteBatch& batch);

  const RouteCounts& counts() const { return counts_; }
  // Walks all routes; not for the way of the data.
  HeldFigures figures() const;
  U32 lists() const { return commLists_->size(); }

 private:
  struct PeerHash {
    std::size_t operator()(const Peer& peer) const;
  };

  RouteLists intern(const CommunityAttributes& communities) const;
  U32 peerNumber(const Peer& peer);
  void count(const RouteBatch& batch);

  // Before the routes, as these drop their lists into it at the end.
  Kiv::Ptr<Routing::Bgp::CommListDedupTable> commLists_;
  std::unordered_map<RouteKey, RouteLists, RouteKeyHash> routes_;
  std::unordered_map<Peer, U32, PeerHash> peers_;
  RouteCounts counts_;
};

}  // namespace CommTool

#endif
