#include "OvBgp/List/ExtCommIp6ListDedupTable.h"

#include "Dorn/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6ListDedupTable)

ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory() {
  return Dorn::notifyingObject<ExtCommIp6ListDedupTable>();
}

}  // namespace Routing::Bgp
