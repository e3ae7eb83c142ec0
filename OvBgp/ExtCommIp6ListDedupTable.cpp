#include "OvBgp/ExtCommIp6ListDedupTable.h"

#include "OvBgp/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6ListDedupTable)

ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory() {
  return notifyingObject<ExtCommIp6ListDedupTable>();
}

}  // namespace Routing::Bgp
