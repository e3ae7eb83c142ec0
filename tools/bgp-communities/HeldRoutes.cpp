#include "tools/bgp-communities/HeldRoutes.h"

#include <algorithm>
#include <string_view>

#include "Kiv/Type.h"

namespace CommTool {

using Routing::Bgp::CommList;
using Routing::Bgp::ExtComm;
using Routing::Bgp::ExtCommContent;
using Routing::Bgp::ExtCommIp6;
using Routing::Bgp::ExtCommIp6Content;

namespace {

// Sorts the values; the distinct ones then come first, and this many they are.
std::size_t distinct(auto& values) {
  std::sort(values.begin(), values.end());
  return static_cast<std::size_t>(std::unique(values.begin(), values.end()) - values.begin());
}

// What the framework's allocator gave out and still has to get back.
U64 bytesHeld() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

// What is asked of it for one list: the object and its values.
U64 bytesOf(const CommList& list) { return sizeof(CommList) + U64(list.comms()) * sizeof(U32); }

ExtCommContent readExtended(OctetReader& value) {
  const U64 high = value.u32();
  return ExtCommContent(high << 32 | value.u32());
}

ExtCommIp6Content readIp6Extended(OctetReader& value) {
  const U8 type = value.u8();
  const U8 subtype = value.u8();
  Ovnet::Ip6Addr::Octets address;
  std::ranges::copy(value.octets(address.size()), address.begin());
  return ExtCommIp6Content(type, subtype, Ovnet::Ip6Addr(address), value.u16());
}

}  // namespace

HeldRoutes::HeldRoutes()
    : parser_(Routing::Bgp::bgpParseExtCommContainerSmFactory()),
      commLists_(Routing::Bgp::commListDedupTableFactory()),
      extComms_(Routing::Bgp::extCommDedupTableFactory(parser_->extCommParser())),
      extCommIp6s_(Routing::Bgp::extCommIp6DedupTableFactory(parser_->extCommParser())),
      bytesAtFirst_(bytesHeld()) {}

std::size_t HeldRoutes::PeerHash::operator()(const Peer& peer) const {
  const auto& octets = peer.address.octets;
  const std::string_view address(reinterpret_cast<const char*>(octets.data()), octets.size());
  return std::hash<std::string_view>{}(address) ^ (std::size_t(peer.as) << 1 | peer.local);
}

RouteCommunities HeldRoutes::add(const RouteBatch& batch) {
  count(batch);
  const U32 peer = peerNumber(batch.peer);
  if (batch.action == RouteAction::withdraw) {
    for (const Nlri& nlri : batch.routes) {
      routes_.erase(RouteKey(peer, nlri));
    }
    return {};
  }
  RouteCommunities communities = intern(batch.communities);
  for (const Nlri& nlri : batch.routes) {
    routes_.insert_or_assign(RouteKey(peer, nlri), communities);
  }
  return communities;
}

// The decoder has checked that each value is of whole members.
RouteCommunities HeldRoutes::intern(const CommunityAttributes& communities) const {
  RouteCommunities interned;
  if (const auto& octets = communities[CommunityKind::standard]) {
    interned.standard = CommList::dedupAttributeValue(commLists_.ptr(), *octets);
  }
  if (const auto& octets = communities[CommunityKind::extended]) {
    for (OctetReader value(*octets, "EXTENDED COMMUNITIES"); !value.atEnd();) {
      interned.extended.push_back(ExtComm::dedupContent(extComms_.ptr(), readExtended(value)));
    }
  }
  if (const auto& octets = communities[CommunityKind::ip6Extended]) {
    for (OctetReader value(*octets, "IPv6 EXTENDED COMMUNITIES"); !value.atEnd();) {
      interned.ip6Extended.push_back(
          ExtCommIp6::dedupContent(extCommIp6s_.ptr(), readIp6Extended(value)));
    }
  }
  return interned;
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
    figures.bytesUnshared += route.extended.size() * sizeof(ExtComm);
    figures.bytesUnshared += route.ip6Extended.size() * sizeof(ExtCommIp6);
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
  figures.extendedValues = extComms_->dedupTable()->size();
  figures.ip6ExtendedValues = extCommIp6s_->dedupTable()->size();
  figures.bytes = bytesHeld() - bytesAtFirst_;
  return figures;
}

}  // namespace CommTool
