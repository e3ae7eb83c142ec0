#include "OvBgp/Snapshot/ExtCommIp6ClassificationListSnapshot.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Snapshot/Private/ExtCommSnapshotImpl.h"

namespace Routing::Bgp {

template class ExtCommClassificationListSnapshotBase<ExtCommIp6Family>;

KIV_OBJECT_DEFINE(ExtCommIp6ClassificationListSnapshot)

ExtCommIp6ClassificationListSnapshot::Ptr extCommIp6ClassificationListSnapshotFactory(
    ExtCommClassification classification) {
  return Dorn::notifyingObject<ExtCommIp6ClassificationListSnapshot>(classification);
}

// Defined here and not with the sub-list, so that sub-lists do not depend on snapshots.
ExtCommIp6ClassificationListSnapshot::Ptr ExtCommIp6ClassificationList::commSnapshot() const {
  return copyOf(*this, extCommIp6ClassificationListSnapshotFactory(classification()));
}

}  // namespace Routing::Bgp
