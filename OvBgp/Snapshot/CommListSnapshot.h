// A copy of a standard community list, which its owner can edit and observe.
#ifndef OVBGP_SNAPSHOT_COMMLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_COMMLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::Bgp {

// The map of a snapshot's communities, for RouteMap::CommSnapshot.
struct OV_EXPORT CommListSnapshotComm {
  // A community: 32 bits in host byte order.
  using Key = U32;
  // Whether the list has the community. Users may also store false.
  using Value = bool;
  // The name of the type record under which the entries are counted.
  static constexpr char memberName[] = "CommListSnapshot::KivComm";
};

}  // namespace Routing::Bgp

extern template class OV_EXPORT Routing::RouteMap::CommSnapshot<Routing::Bgp::CommListSnapshotComm>;

namespace Routing::Bgp {

// A copy of a standard community list, made by CommList::commSnapshot(). The map `comm` has the
// value true for each member of the list. The snapshot is independent of the list: editing it
// does not change the list, and the list may be released. Threads: one at a time.
//
// To intern an edited snapshot, build a new list of the keys (CommList::commIs, dedup).
class OV_EXPORT CommListSnapshot final : public RouteMap::CommSnapshot<CommListSnapshotComm> {
  KIV_OBJECT(CommListSnapshot)
};

// A new, empty snapshot, with notification switched on. Throws std::bad_alloc.
OV_EXPORT CommListSnapshot::Ptr commListSnapshotFactory();

}  // namespace Routing::Bgp

#endif
