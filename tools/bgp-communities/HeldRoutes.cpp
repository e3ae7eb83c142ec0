#include "tools/bgp-communities/HeldRoutes.h"

#include <algorithm>
#include <string_view>

#include "Kiv/Type.h"

namespace CommTool {

using Routing::Bgp::CommList;

namespace {

// Sorts the values; the distinct ones then come first, and this many they are.
std::size_t distinct(auto& values) {
  std::sort(values.begin(), values.end());
  return static_cast<std::size_t>(std::unique(values.begin(), values.end()) - values.begin());
}

// What the framework's allocator gave out and still has to get back: the lists,
// their values and the interning table.  The program uses it for nothing else.
U64 bytesHeld() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

// What is asked of it for one list: the object and its values.
U64 bytesOf(const CommList& list) { return sizeof(CommList) + U64(list.comms()) * sizeof(U32); }

}  // namespace

HeldRoutes::HeldRoutes() : commLists_(Routing::Bgp::commListDedupTableFactory()) {}

std::size_t HeldRoutes::PeerHash::operator()(const Peer& peer) const {
  const auto& octets = peer.address.octets;
  const std::string_view address(reinterpret_cast<const char*>(octets.data()), octets.size());
  return std::hash<std::string_view>{}(address) ^ (std::size_t(peer.as) << 1 | peer.local);
}

RouteLists HeldRoutes::add(const RouteBatch& batch) {
  count(batch);
  const U32 peer = peerNumber(batch.peer);
  if (batch.action == RouteAction::withdraw) {
    for (const Nlri& nlri : batch.routes) {
      routes_.erase(RouteKey(peer, nlri));
    }
    return {};
  }
  RouteLists lists = intern(batch.communities);
  for (const Nlri& nlri : batch.routes) {
    routes_.insert_or_assign(RouteKey(peer, nlri), lists);
  }
  return lists;
}

RouteLists HeldRoutes::intern(const CommunityAttributes& communities) const {
  RouteLists lists;
  if (const auto& octets = communities[CommunityKind::standard]) {
    lists.standard = CommList::dedupAttributeValue(commLists_.ptr(), *octets);
  }
  return lists;
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

HeldFigures HeldRoutes::figures() const {
  HeldFigures figures;
  std::vector<const CommList*> lists;
  for (const auto& [key, route] : routes_) {
    if (const CommList* list = route.standard.ptr()) {
      lists.push_back(list);
      figures.bytesUnshared += bytesOf(*list);
    }
  }
  figures.routes = routes_.size();
  figures.routesWithList = lists.size();
  figures.lists = commLists_->size();
  lists.resize(distinct(lists));
  std::vector<U32> values;
  for (const CommList* list : lists) {
    values.insert(values.end(), list->commVectorRawPtr()->begin(), list->commVectorRawPtr()->end());
  }
  figures.values = distinct(values);
  figures.bytes = bytesHeld();
  return figures;
}

}  // namespace CommTool
