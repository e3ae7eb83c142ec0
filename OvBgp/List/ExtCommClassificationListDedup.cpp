// ExtCommClassificationListBase::dedup. It is defined here, above the sub-lists, because
// it needs the table of the lists to find the table of the sub-lists.
#include "OvBgp/List/ExtCommIp6ListDedupTable.h"
#include "OvBgp/List/ExtCommListDedupTable.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"

namespace Routing::Bgp {
namespace {

// The observer of the route targets' table gives every member a notifier.
void assertFits(const ExtCommClassificationList& list) {
  ASSERT_LIST(list.classification() != extCommClassificationRouteTarget ||
                  &list.fwkType() == &RtExtCommClassificationList::kivType(),
              "route targets are a RtExtCommClassificationList");
}
void assertFits(const ExtCommIp6ClassificationList&) {}

}  // namespace

// An interned sub-list is shared: nothing of it is written again.
template <class Family>
auto ExtCommClassificationListBase<Family>::dedup(const ListTable* table)
    -> Kiv::Ptr<const ClassificationList> {
  if (dedupState() == Dorn::dedupHandleStateNeverDeduped()) {
    ExtCommVectorSort(commVector_);
    self().commVectorSortedIs(true);
    shrink(commVector_);
  }
  assertFits(self());
  return Kiv::staticPtrCast<const ClassificationList>(
      table->classificationListTable(classification()).dedup(Dorn::DedupHandle::Ptr(this)));
}

template OV_EXPORT Kiv::Ptr<const ExtCommClassificationList>
ExtCommClassificationListBase<ExtCommFamily>::dedup(const ExtCommListDedupTable* table);
template OV_EXPORT Kiv::Ptr<const ExtCommIp6ClassificationList>
ExtCommClassificationListBase<ExtCommIp6Family>::dedup(const ExtCommIp6ListDedupTable* table);

}  // namespace Routing::Bgp
