#include "OvBgp/ExtCommIp6ListSnapshot.h"

#include "OvBgp/ExtCommIp6List.h"
#include "OvBgp/ExtCommSnapshotImpl.h"
#include "OvBgp/NotifyingObject.h"

namespace Routing::Bgp {

template class ExtCommListSnapshotBase<ExtCommIp6Family>;

KIV_OBJECT_DEFINE(ExtCommIp6ListSnapshot)

ExtCommIp6ListSnapshot::Ptr extCommIp6ListSnapshotFactory() {
  return notifyingObject<ExtCommIp6ListSnapshot>();
}

ExtCommIp6ListSnapshot::Ptr ExtCommIp6List::commSnapshot() const {
  ExtCommIp6ListSnapshot::Ptr snapshot = extCommIp6ListSnapshotFactory();
  classificationListsCopy(*this, *snapshot);
  commsCopy(*this, *snapshot);
  return snapshot;
}

}  // namespace Routing::Bgp
