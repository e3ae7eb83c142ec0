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

ExtCommClassificationListSnapshot::Ptr ExtCommClassificationList::commSnapshot() const {
  ExtCommClassificationListSnapshot::Ptr snapshot =
      extCommClassificationListSnapshotFactory(classification());
  commsCopy(*this, *snapshot);
  return snapshot;
}

}  // namespace Routing::Bgp
