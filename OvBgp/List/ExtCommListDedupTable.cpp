#include "OvBgp/List/ExtCommListDedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "OvBgp/SubList/ExtCommFamily.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommListDedupTable)

ExtCommListDedupTable::ExtCommListDedupTable() { handleInitialized(); }

// The members are destroyed in reverse order, so the hash table of route targets is first. It
// notifies the observer, which is still there and empties the collection.
ExtCommListDedupTable::~ExtCommListDedupTable() = default;

// The observer is registered before the table is known to anyone, so it sees every sub-list
// from its insertion on.
void ExtCommListDedupTable::handleInitialized() {
  initClassificationListTable();
  rtExtCommClassificationListDedupTable_ = subTable();
  dedupTable()->keyProbeIs(probeOfMembers<ExtComm>);
  extCommClassificationListDedupTable()->keyProbeIs(probeOfMembers<ExtComm>);
  rtExtCommClassificationListDedupTable_->keyProbeIs(probeOfMembers<ExtComm>);
  rtExtCommListLifeTimeNotifieeIs(notifyingRtExtCommListCollectionIs());
  rtExtCommClassificationListDedupTable_->lifeTimeNotifieeIs(rtExtCommListLifeTimeNotifiee_);
}

const NotifyingRtExtCommListCollection::Ptr&
ExtCommListDedupTable::notifyingRtExtCommListCollectionIs() {
  return notifyingRtExtCommListCollection_ = notifyingRtExtCommListCollectionFactory();
}

void ExtCommListDedupTable::notifyingRtExtCommListCollectionDel() {
  notifyingRtExtCommListCollection_ = nullptr;
}

const RtExtCommListLifeTimeNotifiee::Ptr& ExtCommListDedupTable::rtExtCommListLifeTimeNotifieeIs(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  return rtExtCommListLifeTimeNotifiee_ = rtExtCommListLifeTimeNotifieeFactory(collection);
}

void ExtCommListDedupTable::rtExtCommListLifeTimeNotifieeDel() {
  rtExtCommListLifeTimeNotifiee_ = nullptr;
}

void ExtCommListDedupTable::dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                                      unsigned int indent) const {
  ExtCommListDedupTableBase::dumpState(context, indent);
  dumpTable(context, indent, "rtExtCommClassification", rtExtCommClassificationListDedupTable_);
}

ExtCommListDedupTable::Ptr extCommListDedupTableFactory() {
  return Dorn::notifyingObject<ExtCommListDedupTable>();
}

}  // namespace Routing::Bgp
