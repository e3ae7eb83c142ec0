#include "Routing/RouteMap/CommListSnapshot.h"

// By its full name, as there is one of standard lists.
KIV_OBJECT_DEFINE(Routing::RouteMap::CommListSnapshot)

namespace Routing::RouteMap {

template class CommSnapshot<CommListSnapshotComm>;

CommListSnapshot::Ptr commListSnapshotFactory() {
  CommListSnapshot::Ptr snapshot(new CommListSnapshot());
  snapshot->hasNotificationActiveIs(true);
  return snapshot;
}

}  // namespace Routing::RouteMap
