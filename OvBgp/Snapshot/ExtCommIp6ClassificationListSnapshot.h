// A copy of the members of one classification of an IPv6 address specific extended
// community list, to edit and to watch.
#ifndef OVBGP_SNAPSHOT_EXTCOMMIP6CLASSIFICATIONLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMIP6CLASSIFICATIONLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

namespace Routing::Bgp {

extern template class OV_EXPORT ExtCommClassificationListSnapshotBase<ExtCommIp6Family>;

// See ExtCommClassificationListSnapshotBase.
class OV_EXPORT ExtCommIp6ClassificationListSnapshot final
    : public ExtCommClassificationListSnapshotBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6ClassificationListSnapshot)

 public:
  explicit ExtCommIp6ClassificationListSnapshot(ExtCommClassification classification)
      : ExtCommClassificationListSnapshotBase(classification) {}
};

// A new, empty snapshot with notification on.
OV_EXPORT ExtCommIp6ClassificationListSnapshot::Ptr extCommIp6ClassificationListSnapshotFactory(
    ExtCommClassification classification);

}  // namespace Routing::Bgp

#endif
