// A copy of an extended community list, to edit and to watch.
#ifndef OVBGP_SNAPSHOT_EXTCOMMLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

extern template class OV_EXPORT ExtCommListSnapshotBase<ExtCommFamily>;

// See ExtCommListSnapshotBase.
class OV_EXPORT ExtCommListSnapshot final : public ExtCommListSnapshotBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommListSnapshot)
};

// A new, empty snapshot with notification on.
OV_EXPORT ExtCommListSnapshot::Ptr extCommListSnapshotFactory();

}  // namespace Routing::Bgp

#endif
