#include "OvBgp/ExtCommListSnapshot.h"

#include "OvBgp/ExtCommList.h"
#include "OvBgp/ExtCommSnapshotImpl.h"
#include "OvBgp/NotifyingObject.h"

namespace Routing::Bgp {

template class ExtCommListSnapshotBase<ExtCommFamily>;

KIV_OBJECT_DEFINE(ExtCommListSnapshot)

ExtCommListSnapshot::Ptr extCommListSnapshotFactory() {
  return notifyingObject<ExtCommListSnapshot>();
}

ExtCommListSnapshot::Ptr ExtCommList::commSnapshot() const {
  ExtCommListSnapshot::Ptr snapshot = extCommListSnapshotFactory();
  classificationListsCopy(*this, *snapshot);
  commsCopy(*this, *snapshot);
  return snapshot;
}

ExtCommListSnapshot::Ptr ExtCommList::snapshot() const { return commSnapshot(); }

}  // namespace Routing::Bgp
