#include "Routing/RouteMap/CommListSnapshot.h"

// With its full name, because Routing::Bgp has a CommListSnapshot of standard lists.
KIV_OBJECT_DEFINE(Routing::RouteMap::CommListSnapshot)

namespace Routing::RouteMap {

template class CommSnapshot<CommListSnapshotComm>;

CommListSnapshot::Ptr commListSnapshotFactory() {
  CommListSnapshot::Ptr snapshot(new CommListSnapshot());
  snapshot->hasNotificationActiveIs(true);
  return snapshot;
}

}  // namespace Routing::RouteMap
