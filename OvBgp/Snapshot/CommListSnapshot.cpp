#include "OvBgp/Snapshot/CommListSnapshot.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/List/CommList.h"
#include "OvBgp/List/LargeCommList.h"
#include "Routing/RouteMap/CommListSnapshot.h"

template class Routing::RouteMap::CommSnapshot<Routing::Bgp::CommListSnapshotComm>;

namespace Routing::Bgp {
namespace {

// A snapshot of any plain list. Observers do not exist yet, so the insertions notify nobody.
template <class Snapshot, class List>
typename Snapshot::Ptr snapshotOf(const List& list) {
  auto snapshot = Dorn::notifyingObject<Snapshot>();
  for (const auto& community : *list.commVectorRawPtr()) snapshot->commIs(community, true);
  return snapshot;
}

}  // namespace

KIV_OBJECT_DEFINE(CommListSnapshot)

CommListSnapshot::Ptr commListSnapshotFactory() {
  return Dorn::notifyingObject<CommListSnapshot>();
}

// The commSnapshot of both lists is defined here, so that the lists themselves do not depend on
// snapshots.
CommListSnapshot::Ptr CommList::commSnapshot() const { return snapshotOf<CommListSnapshot>(*this); }

RouteMap::CommListSnapshot::Ptr LargeCommList::commSnapshot() const {
  return snapshotOf<RouteMap::CommListSnapshot>(*this);
}

}  // namespace Routing::Bgp
