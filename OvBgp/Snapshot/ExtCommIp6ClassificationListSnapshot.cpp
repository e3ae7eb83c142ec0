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

ExtCommIp6ClassificationListSnapshot::Ptr ExtCommIp6ClassificationList::commSnapshot() const {
  ExtCommIp6ClassificationListSnapshot::Ptr snapshot =
      extCommIp6ClassificationListSnapshotFactory(classification());
  commsCopy(*this, *snapshot);
  return snapshot;
}

}  // namespace Routing::Bgp
