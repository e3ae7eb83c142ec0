#include "OvBgp/List/ExtCommIp6ListDedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6ListDedupTable)

void ExtCommIp6ListDedupTable::handleInitialized() {
  initClassificationListTable();
  dedupTable()->keyProbeIs(probeOfMembers<ExtCommIp6>);
  extCommClassificationListDedupTable()->keyProbeIs(probeOfMembers<ExtCommIp6>);
}

ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory() {
  return Dorn::notifyingObject<ExtCommIp6ListDedupTable>();
}

}  // namespace Routing::Bgp
