// A copy of the members of one classification of an extended community list, to
// edit and to watch.
#ifndef OVBGP_SNAPSHOT_EXTCOMMCLASSIFICATIONLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMCLASSIFICATIONLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

extern template class OV_EXPORT ExtCommClassificationListSnapshotBase<ExtCommFamily>;

// See ExtCommClassificationListSnapshotBase.
class OV_EXPORT ExtCommClassificationListSnapshot final
    : public ExtCommClassificationListSnapshotBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommClassificationListSnapshot)

 public:
  explicit ExtCommClassificationListSnapshot(ExtCommClassification classification)
      : ExtCommClassificationListSnapshotBase(classification) {}
};

// A new, empty snapshot with notification on.
OV_EXPORT ExtCommClassificationListSnapshot::Ptr extCommClassificationListSnapshotFactory(
    ExtCommClassification classification);

}  // namespace Routing::Bgp

#endif
