#include "OvBgp/Snapshot/ExtCommListSnapshot.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/Snapshot/Private/ExtCommSnapshotImpl.h"

namespace Routing::Bgp {

template class ExtCommListSnapshotBase<ExtCommFamily>;

KIV_OBJECT_DEFINE(ExtCommListSnapshot)

ExtCommListSnapshot::Ptr extCommListSnapshotFactory() {
  return Dorn::notifyingObject<ExtCommListSnapshot>();
}

// Defined here and not with the list, so that lists do not depend on snapshots.
ExtCommListSnapshot::Ptr ExtCommList::commSnapshot() const {
  return copyOf(*this, extCommListSnapshotFactory());
}

ExtCommListSnapshot::Ptr ExtCommList::snapshot() const { return commSnapshot(); }

}  // namespace Routing::Bgp
