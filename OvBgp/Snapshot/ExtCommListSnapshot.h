// A copy of an extended community list, which its owner can edit and observe.
#ifndef OVBGP_SNAPSHOT_EXTCOMMLISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMLISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {

// Instantiated in this header's source.
extern template class OV_EXPORT ExtCommListSnapshotBase<ExtCommFamily>;

// A copy of a list, made by ExtCommList::commSnapshot(). Its operations are those of
// ExtCommListSnapshotBase.
class OV_EXPORT ExtCommListSnapshot final : public ExtCommListSnapshotBase<ExtCommFamily> {
  KIV_OBJECT(ExtCommListSnapshot)
};

// A new, empty snapshot, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommListSnapshot::Ptr extCommListSnapshotFactory();

}  // namespace Routing::Bgp

#endif
