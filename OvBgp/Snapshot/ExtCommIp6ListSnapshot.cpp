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

// Defined here and not with the list, so that lists do not depend on snapshots.
ExtCommIp6ListSnapshot::Ptr ExtCommIp6List::commSnapshot() const {
  return copyOf(*this, extCommIp6ListSnapshotFactory());
}

}  // namespace Routing::Bgp
