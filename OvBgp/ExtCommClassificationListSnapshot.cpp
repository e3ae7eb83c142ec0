#include "OvBgp/ExtCommClassificationListSnapshot.h"

#include "OvBgp/ExtCommSnapshotImpl.h"
#include "OvBgp/NotifyingObject.h"

namespace Routing::Bgp {

template class ExtCommClassificationListSnapshotBase<ExtCommFamily>;

KIV_OBJECT_DEFINE(ExtCommClassificationListSnapshot)

ExtCommClassificationListSnapshot::Ptr extCommClassificationListSnapshotFactory(
    ExtCommClassification classification) {
  return notifyingObject<ExtCommClassificationListSnapshot>(classification);
}

ExtCommClassificationListSnapshot::Ptr ExtCommClassificationList::commSnapshot() const {
  ExtCommClassificationListSnapshot::Ptr snapshot =
      extCommClassificationListSnapshotFactory(classification());
  commsCopy(*this, *snapshot);
  return snapshot;
}

}  // namespace Routing::Bgp
