// The routes of all peers with their interned lists, as a routing agent keeps them.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_HELD_ROUTES_H
#define TOOLS_BGP_COMMUNITIES_RIB_HELD_ROUTES_H

#include <unordered_map>

#include "tools/bgp-communities/bgp/Route.h"
#include "tools/bgp-communities/rib/CommunityTables.h"
#include "tools/bgp-communities/rib/RouteTable.h"

namespace CommTool {

// How many routes were added and removed, over the whole run.
struct RouteCounts {
  // Announced in UPDATE messages, including those that replaced a route.
  U64 announced = 0;
  // Withdrawn by the peer, or treated as withdrawn because an attribute was damaged.
  U64 withdrawn = 0;
  // Entries of dumped tables.
  U64 tableEntries = 0;
};

// Each announced route and each table entry references its lists, and releases them when it is
// withdrawn or replaced. Routes are distinguished by peer (address, AS number, direction), address
// family, prefix and path identifier. Owner thread only.
class HeldRoutes {
 public:
  // The tables in which the lists of the routes must be interned.
  const CommunityTables& tables() const { return tables_; }
  // The routes that were added and removed so far.
  const RouteCounts& counts() const { return counts_; }
  // The routes that are present now.
  const RouteTable& routes() const { return routes_; }

  // Applies a batch and counts its routes: inserts or replaces them with these lists, or removes
  // them if they are withdrawn.
  void add(const RouteBatch& batch, const RouteCommunities& communities);
  // Removes the routes of a batch, whatever its action is, and counts nothing. For announcements
  // that a filter rejects, because they replace a route that may have passed the filter.
  void drop(const RouteBatch& batch);

 private:
  struct PeerHash {
    std::size_t operator()(const Peer& peer) const;
  };

  U32 peerNumber(const Peer& peer);
  void count(const RouteBatch& batch);

  // Declared before the routes, so that the routes release their lists first and the tables are
  // empty when they are destroyed.
  const CommunityTables tables_;
  RouteTable routes_;
  std::unordered_map<Peer, U32, PeerHash> peers_;  // numbers of the peers
  RouteCounts counts_;
};

}  // namespace CommTool

#endif
