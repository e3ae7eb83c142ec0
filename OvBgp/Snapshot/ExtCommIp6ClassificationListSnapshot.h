// A copy of a sub-list, that is, of the members of one classification of an IPv6 list,
// which its owner can edit and observe.
#ifndef OVBGP_SNAPSHOT_EXTCOMMIP6CLASSIFICATIONLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMIP6CLASSIFICATIONLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

namespace Routing::Bgp {

extern template class OV_EXPORT ExtCommClassificationListSnapshotBase<ExtCommIp6Family>;

// A copy of a sub-list, made by ExtCommIp6ClassificationList::commSnapshot(). Its operations are
// those of ExtCommClassificationListSnapshotBase.
class OV_EXPORT ExtCommIp6ClassificationListSnapshot final
    : public ExtCommClassificationListSnapshotBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6ClassificationListSnapshot)

 public:
  // An empty snapshot for members of `classification`. Users call the factory instead.
  explicit ExtCommIp6ClassificationListSnapshot(ExtCommClassification classification)
      : ExtCommClassificationListSnapshotBase(classification) {}
};

// A new, empty snapshot for members of `classification`, with notification switched on. Throws
// std::bad_alloc.
OV_EXPORT ExtCommIp6ClassificationListSnapshot::Ptr extCommIp6ClassificationListSnapshotFactory(
    ExtCommClassification classification);

}  // namespace Routing::Bgp

#endif
