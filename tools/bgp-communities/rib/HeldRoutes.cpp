#include "tools/bgp-communities/HeldRoutes.h"

#include <string_view>

namespace CommTool {

std::size_t HeldRoutes::PeerHash::operator()(const Peer& peer) const {
  const auto& octets = peer.address.octets;
  const std::string_view address(reinterpret_cast<const char*>(octets.data()), octets.size());
  return std::hash<std::string_view>{}(address) ^ (std::size_t(peer.as) << 1 | peer.local);
}

void HeldRoutes::add(const RouteBatch& batch, const RouteCommunities& communities) {
  count(batch);
  if (batch.action == RouteAction::withdraw) return drop(batch);
  const U32 peer = peerNumber(batch.peer);
  for (const Nlri& nlri : batch.routes) routes_.prefetch(RouteKey(peer, nlri));
  for (const Nlri& nlri : batch.routes) {
    routes_.insertOrAssign(RouteKey(peer, nlri), communities);
  }
}

void HeldRoutes::drop(const RouteBatch& batch) {
  const U32 peer = peerNumber(batch.peer);
  for (const Nlri& nlri : batch.routes) {
    routes_.erase(RouteKey(peer, nlri));
  }
}

U32 HeldRoutes::peerNumber(const Peer& peer) {
  return peers_.try_emplace(peer, static_cast<U32>(peers_.size())).first->second;
}

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
