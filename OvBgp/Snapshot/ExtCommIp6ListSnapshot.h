// A copy of an IPv6 address specific extended community list, which its owner can edit and observe.
#ifndef OVBGP_SNAPSHOT_EXTCOMMIP6LISTSNAPSHOT_H
#define OVBGP_SNAPSHOT_EXTCOMMIP6LISTSNAPSHOT_H

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Snapshot/ExtCommSnapshot.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

namespace Routing::Bgp {

// Instantiated in this header's source.
extern template class OV_EXPORT ExtCommListSnapshotBase<ExtCommIp6Family>;

// A copy of a list, made by ExtCommIp6List::commSnapshot(). Its operations are those of
// ExtCommListSnapshotBase.
class OV_EXPORT ExtCommIp6ListSnapshot final : public ExtCommListSnapshotBase<ExtCommIp6Family> {
  KIV_OBJECT(ExtCommIp6ListSnapshot)
};

// A new, empty snapshot, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6ListSnapshot::Ptr extCommIp6ListSnapshotFactory();

}  // namespace Routing::Bgp

#endif
