#include "tools/bgp-communities/rib/HeldRoutes.h"

#include <string_view>

namespace CommTool {

// All parts of a peer enter the hash. Sessions may share the address or the AS number.
std::size_t HeldRoutes::PeerHash::operator()(const Peer& peer) const {
  const auto& octets = peer.address.octets;
  const std::string_view address(reinterpret_cast<const char*>(octets.data()), octets.size());
  return std::hash<std::string_view>{}(address) ^ (std::size_t(peer.as) << 1 | peer.local);
}

// First all home slots of the batch are prefetched, so that the misses of the cache overlap.
void HeldRoutes::add(const RouteBatch& batch, const RouteCommunities& communities) {
  count(batch);
  if (batch.action == RouteAction::withdraw) return drop(batch);
  const U32 peer = peerNumber(batch.peer);
  for (const Nlri& nlri : batch.routes) routes_.prefetch(RouteKey(peer, nlri));
  for (const Nlri& nlri : batch.routes) {
    routes_.insertOrAssign(RouteKey(peer, nlri), communities);
  }
}

// Routes that are not present are ignored: peers also withdraw what they never announced.
void HeldRoutes::drop(const RouteBatch& batch) {
  const U32 peer = peerNumber(batch.peer);
  for (const Nlri& nlri : batch.routes) {
    routes_.erase(RouteKey(peer, nlri));
  }
}

// Peers are numbered in the order of their first route. The number is much shorter in a key than
// the address.
U32 HeldRoutes::peerNumber(const Peer& peer) {
  return peers_.try_emplace(peer, static_cast<U32>(peers_.size())).first->second;
}

// Counts each route of the batch by the action.
void HeldRoutes::count(const RouteBatch& batch) {
  switch (batch.action) {
    case RouteAction::announce:
      counts_.announced += batch.routes.size();
      break;
    case RouteAction::withdraw:
      counts_.withdrawn += batch.routes.size();
      break;
    case RouteAction::tableEntry:
      counts_.tableEntries += batch.routes.size();
      break;
  }
}

}  // namespace CommTool
