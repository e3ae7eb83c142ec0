// ExtCommClassificationListBase::dedup. It is defined here and not with the sub-lists, because
// it needs the table of the lists, which includes the sub-lists' headers, not vice versa.
#include "OvBgp/List/ExtCommIp6ListDedupTable.h"
#include "OvBgp/List/ExtCommListDedupTable.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"

namespace Routing::Bgp {
namespace {

// The observer of the route-target table gives every member a notifier, so each member must be
// of the class that has a place for it.
void assertFits(const ExtCommClassificationList& list) {
  ASSERT_LIST(list.classification() != extCommClassificationRouteTarget ||
                  &list.fwkType() == &RtExtCommClassificationList::kivType(),
              "route targets are a RtExtCommClassificationList");
}
// IPv6 lists have no such table, so any sub-list fits.
void assertFits(const ExtCommIp6ClassificationList&) {}

}  // namespace

// A sub-list that was interned before may be shared with other threads, so it is neither sorted
// nor written again.
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
