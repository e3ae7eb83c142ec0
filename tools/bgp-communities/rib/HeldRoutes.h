// The routes of all peers, with their interned lists: the agent's side of the
// tool.
#ifndef TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H
#define TOOLS_BGP_COMMUNITIES_HELD_ROUTES_H

#include <unordered_map>

#include "tools/bgp-communities/CommunityTables.h"
#include "tools/bgp-communities/Route.h"
#include "tools/bgp-communities/RouteTable.h"

namespace CommTool {

// Routes as they came and went.
struct RouteCounts {
  U64 announced = 0;
  U64 withdrawn = 0;  // by the peer, or because their attributes were broken
  U64 tableEntries = 0;
};

// Each announced route, and each entry of a table, holds one reference to each of
// its lists; a withdrawn or replaced route drops its own.  Routes differ by peer
// (address, AS, direction), address family, prefix and path identifier.
class HeldRoutes {
 public:
  const CommunityTables& tables() const { return tables_; }
  const RouteCounts& counts() const { return counts_; }
  const RouteTable& routes() const { return routes_; }

  // Does what the batch says, and counts it: its routes come with these lists, or
  // go.
  void add(const RouteBatch& batch, const RouteCommunities& communities);
  // Drops the routes of the batch, whatever it says, and counts nothing.
  void drop(const RouteBatch& batch);

 private:
  struct PeerHash {
    std::size_t operator()(const Peer& peer) const;
  };

  U32 peerNumber(const Peer& peer);
  void count(const RouteBatch& batch);

  // Before the routes, as these drop what they hold into the tables at the end.
  const CommunityTables tables_;
  RouteTable routes_;
  std::unordered_map<Peer, U32, PeerHash> peers_;
  RouteCounts counts_;
};

}  // namespace CommTool

#endif
