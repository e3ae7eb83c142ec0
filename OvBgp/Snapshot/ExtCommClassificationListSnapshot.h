// A copy of a sub-list, that is, of the members of one classification of an extended community
// list, which its owner can edit and observe.
#ifndef OVBGP_SNAPSHOT_EXTCOMMCLASSIFICATIONLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMCLASSIFICATIONLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

extern template class OV_EXPORT ExtCommClassificationListSnapshotBase<ExtCommFamily>;

// A copy of a sub-list, made by ExtCommClassificationList::commSnapshot(). Its operations are
// those of ExtCommClassificationListSnapshotBase.
class OV_EXPORT ExtCommClassificationListSnapshot final
    : public ExtCommClassificationListSnapshotBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommClassificationListSnapshot)

 public:
  // An empty snapshot for members of `classification`. Users call the factory instead.
  explicit ExtCommClassificationListSnapshot(ExtCommClassification classification)
      : ExtCommClassificationListSnapshotBase(classification) {}
};

// A new, empty snapshot for members of `classification`, with notification switched on. Throws
// std::bad_alloc.
OV_EXPORT ExtCommClassificationListSnapshot::Ptr extCommClassificationListSnapshotFactory(
    ExtCommClassification classification);

}  // namespace Routing::Bgp

#endif
