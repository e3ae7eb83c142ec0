#include "OvBgp/Snapshot/ExtCommClassificationListSnapshot.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Snapshot/Private/ExtCommSnapshotImpl.h"

namespace Routing::Bgp {

template class ExtCommClassificationListSnapshotBase<ExtCommFamily>;

KIV_OBJECT_DEFINE(ExtCommClassificationListSnapshot)

ExtCommClassificationListSnapshot::Ptr extCommClassificationListSnapshotFactory(
    ExtCommClassification classification) {
  return Dorn::notifyingObject<ExtCommClassificationListSnapshot>(classification);
}

// Defined here and not with the sub-list, so that sub-lists do not depend on snapshots.
ExtCommClassificationListSnapshot::Ptr ExtCommClassificationList::commSnapshot() const {
  return copyOf(*this, extCommClassificationListSnapshotFactory(classification()));
}

}  // namespace Routing::Bgp
