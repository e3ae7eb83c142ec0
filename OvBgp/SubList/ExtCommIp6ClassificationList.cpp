#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6ClassificationList)

ExtCommIp6ClassificationList::Ptr extCommIp6ClassificationListFactory(
    ExtCommClassification classification) {
  return Dorn::notifyingObject<ExtCommIp6ClassificationList>(classification);
}

// Unlike for communities of eight octets, the interface asks for this check.
ExtCommIp6::PtrConst ExtCommIp6ClassificationList::comm(const ExtCommIp6Content& content) const {
  KIV_ASSERT(commVectorSorted(), "commVectorSorted", "OvBgp/OvBgpCommunityListImpl");
  return lookupExtComm(content);
}

// A null sub-list is a classification without members, so nothing is written for it.
std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList* list) {
  if (list) list->writeText(out);
  return out;
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6ClassificationList& list) {
  return out << &list;
}

}  // namespace Routing::Bgp
