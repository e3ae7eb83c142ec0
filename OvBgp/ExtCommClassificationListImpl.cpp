#include "OvBgp/ExtCommClassificationListImpl.h"

#include "BgpCommon/BgpHashIdentity.h"
#include "BgpCommon/BgpHashMixImpl.h"
#include "OvBgp/ExtCommClassificationList.h"
#include "OvBgp/ExtCommIp6ClassificationList.h"
#include "OvBgp/ExtCommIp6ListDedupTable.h"
#include "OvBgp/ExtCommListDedupTable.h"
#include "OvBgp/ExtCommListMaking.h"
#include "OvBgp/ExtCommMembers.h"

namespace Routing::Bgp {

void ExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void RtExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void LinkBandwidthExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void ExtCommIp6ClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }

namespace {

// The observer of the route targets' table gives every member a notifier.
void assertFits(const ExtCommClassificationList& list) {
  ASSERT_LIST(list.classification() != extCommClassificationRouteTarget ||
                  &list.fwkType() == &RtExtCommClassificationList::kivType(),
              "route targets are a RtExtCommClassificationList");
}
void assertFits(const ExtCommIp6ClassificationList&) {}

}  // namespace

template <class Family>
ExtCommClassificationListBase<Family>::~ExtCommClassificationListBase() = default;

template <class Family>
Kiv::String ExtCommClassificationListBase<Family>::toStrep() const {
  return textOf(*this);
}

template <class Family>
void ExtCommClassificationListBase<Family>::writeText(std::ostream& out) const {
  write(out, stringValue(classification()));
  write(out, " : ");
  writeJoined(out, commVector_);
}

template <class Family>
U32 ExtCommClassificationListBase<Family>::hash() const {
  ASSERT_LIST(self().commVectorSorted(), "commVectorSorted()");
  BgpCommon::BgpHashMixImpl mix;
  for (const ValuePtr& comm : commVector_) BgpCommon::addIdentity(mix, comm.ptr());
  return mix.hash();
}

template <class Family>
bool ExtCommClassificationListBase<Family>::compare(Dorn::DedupHandle::RawPtrConst other) const {
  ASSERT_LIST(self().commVectorSorted(), "commVectorSorted()");
  return samePointers(commVector_, static_cast<const ClassificationList*>(other)->commVector());
}

template <class Family>
bool ExtCommClassificationListBase<Family>::compareByContent(
    const Dorn::DedupContentHandle& key) const {
  return sameObjects(pointersIn(commVector_),
                     static_cast<const ExtCommListContent<Value>&>(key).comms());
}

template <class Family>
U32 ExtCommClassificationListBase<Family>::probeHash() const {
  return addressHash(pointersIn(commVector_));
}

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

template class ExtCommClassificationListBase<ExtCommFamily>;
template class ExtCommClassificationListBase<ExtCommIp6Family>;

}  // namespace Routing::Bgp
