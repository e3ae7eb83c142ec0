#include "OvBgp/Snapshot/ExtCommIp6ListSnapshot.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/List/ExtCommIp6List.h"
#include "OvBgp/Snapshot/Private/ExtCommSnapshotImpl.h"

namespace Routing::Bgp {

template class ExtCommListSnapshotBase<ExtCommIp6Family>;

KIV_OBJECT_DEFINE(ExtCommIp6ListSnapshot)

ExtCommIp6ListSnapshot::Ptr extCommIp6ListSnapshotFactory() {
  return Dorn::notifyingObject<ExtCommIp6ListSnapshot>();
}

ExtCommIp6ListSnapshot::Ptr ExtCommIp6List::commSnapshot() const {
  ExtCommIp6ListSnapshot::Ptr snapshot = extCommIp6ListSnapshotFactory();
  classificationListsCopy(*this, *snapshot);
  commsCopy(*this, *snapshot);
  return snapshot;
}

}  // namespace Routing::Bgp
