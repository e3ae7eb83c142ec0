// The interned lists of one route.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_ROUTE_COMMUNITIES_H
#define TOOLS_BGP_COMMUNITIES_RIB_ROUTE_COMMUNITIES_H

#include "OvBgp/OvBgpCommunityList.h"
#include "tools/bgp-communities/bgp/CommunityKinds.h"

namespace CommTool {

// One reference to an interned list for each kind; null if the route has no attribute of that kind.
struct RouteCommunities {
  // RFC 1997.
  Routing::Bgp::CommList::PtrConst standard;
  // RFC 8092.
  Routing::Bgp::LargeCommList::PtrConst large;
  // RFC 4360.
  Routing::Bgp::ExtCommList::PtrConst extended;
  // RFC 5701.
  Routing::Bgp::ExtCommIp6List::PtrConst ip6Extended;

  // Calls `visit(kind, list)` for each list that is not null, in the order of the kinds. `visit`
  // must accept all four list types.
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
