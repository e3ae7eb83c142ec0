// A copy of a large community list, to edit and to watch.
#ifndef ROUTING_ROUTEMAP_COMMLISTSNAPSHOT_H
#define ROUTING_ROUTEMAP_COMMLISTSNAPSHOT_H

#include "Acl/CommunityValue.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::RouteMap {

struct OV_EXPORT CommListSnapshotComm {
  using Key = Acl::CommunityValue;
  using Value = bool;
  static constexpr char memberName[] = "Routing::RouteMap::CommListSnapshot::KivComm";
};

extern template class OV_EXPORT CommSnapshot<CommListSnapshotComm>;

// `comm`: true for each of the list's communities.
class OV_EXPORT CommListSnapshot final : public CommSnapshot<CommListSnapshotComm> {
  KIV_OBJECT(CommListSnapshot)
};

// A new, empty snapshot with notification on.
OV_EXPORT CommListSnapshot::Ptr commListSnapshotFactory();

}  // namespace Routing::RouteMap

#endif
