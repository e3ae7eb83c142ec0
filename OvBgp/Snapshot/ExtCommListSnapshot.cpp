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

ExtCommListSnapshot::Ptr ExtCommList::commSnapshot() const {
  ExtCommListSnapshot::Ptr snapshot = extCommListSnapshotFactory();
  classificationListsCopy(*this, *snapshot);
  commsCopy(*this, *snapshot);
  return snapshot;
}

ExtCommListSnapshot::Ptr ExtCommList::snapshot() const { return commSnapshot(); }

}  // namespace Routing::Bgp
