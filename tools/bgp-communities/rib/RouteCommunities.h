// The interned lists of one route.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_COMMUNITIES_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_COMMUNITIES_H

#include "OvBgp/OvBgpCommunityList.h"
#include "tools/bgp-communities/CommunityKinds.h"

namespace CommTool {

// Null where the route has no attribute of the kind.
struct RouteCommunities {
  Routing::Bgp::CommList::PtrConst standard;
  Routing::Bgp::LargeCommList::PtrConst large;
  Routing::Bgp::ExtCommList::PtrConst extended;
  Routing::Bgp::ExtCommIp6List::PtrConst ip6Extended;

  // Calls `visit(kind, list)` for each list, in the order of the kinds.
  template <class Visit>
  void forEachList(const Visit& visit) const {
    if (standard) visit(CommunityKind::standard, *standard);
    if (large) visit(CommunityKind::large, *large);
    if (extended) visit(CommunityKind::extended, *extended);
    if (ip6Extended) visit(CommunityKind::ip6Extended, *ip6Extended);
  }
};

}  // namespace CommTool

#endif
