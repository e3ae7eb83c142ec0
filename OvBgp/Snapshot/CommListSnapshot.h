// A copy of a standard community list, to edit and to watch.
#ifndef OVBGP_SNAPSHOT_COMMLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_COMMLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::Bgp {

struct OV_EXPORT CommListSnapshotComm {
  using Key = U32;
  using Value = bool;
  static constexpr char memberName[] = "CommListSnapshot::KivComm";
};

}  // namespace Routing::Bgp

extern template class OV_EXPORT Routing::RouteMap::CommSnapshot<Routing::Bgp::CommListSnapshotComm>;

namespace Routing::Bgp {

// `comm`: true for each of the list's communities, in host byte order.
class OV_EXPORT CommListSnapshot final : public RouteMap::CommSnapshot<CommListSnapshotComm> {
  KIV_OBJECT(CommListSnapshot)
};

// A new, empty snapshot with notification on.
OV_EXPORT CommListSnapshot::Ptr commListSnapshotFactory();

}  // namespace Routing::Bgp

#endif
