// An editable copy of a large community list, with notification of changes.
#ifndef ROUTING_ROUTEMAP_COMMLISTSNAPSHOT_H
#define ROUTING_ROUTEMAP_COMMLISTSNAPSHOT_H

#include "Acl/CommunityValue.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Routing/RouteMap/CommSnapshot.h"

namespace Routing::RouteMap {

// The traits of the snapshot's map (Kiv/NotifyingMap.h).
struct OV_EXPORT CommListSnapshotComm {
  // A large community.
  using Key = Acl::CommunityValue;
  // Always true: the map is used as a set.
  using Value = bool;
  // The name of the record under which entries are counted.
  static constexpr char memberName[] = "Routing::RouteMap::CommListSnapshot::KivComm";
};

// Instantiated in the library only.
extern template class OV_EXPORT CommSnapshot<CommListSnapshotComm>;

// A snapshot with one entry for each community of the list, whose value is true. Created by
// commListSnapshotFactory. For threads, see CommSnapshot.
class OV_EXPORT CommListSnapshot final : public CommSnapshot<CommListSnapshotComm> {
  KIV_OBJECT(CommListSnapshot)
};

// Returns a new, empty snapshot with notification switched on. Raises std::bad_alloc.
OV_EXPORT CommListSnapshot::Ptr commListSnapshotFactory();

}  // namespace Routing::RouteMap

#endif
