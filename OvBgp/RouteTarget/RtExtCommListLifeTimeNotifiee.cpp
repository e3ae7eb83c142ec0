#include "OvBgp/RouteTarget/RtExtCommListLifeTimeNotifiee.h"

#include "BgpCommon/Private/OvBgpTrace.h"
#include "Dorn/DedupHashTable.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {
namespace {

// The observed table has only members of this class; dedup of sub-lists checks it.
RtExtCommClassificationList* rtExtCommListOf(Dorn::DedupHandle* handle) {
  return static_cast<RtExtCommClassificationList*>(handle);
}

// The two trace lines differ only in the name of the function.
void traceLifeTime(const char* function, const Dorn::DedupHandle* handle,
                   const RtExtCommListLifeTimeNotifier* notifier) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceLifeTime,
            function << " handle: " << handle << " rtExtCommListLifeTimeNotifier: " << notifier);
}

// Undoes a failed insertion. The collection has already taken the notifier back, unless an observer
// inserted it anew. There is no notifier if an observer has stopped the observation meanwhile.
void withdraw(RtExtCommClassificationList& rtExtCommList,
              NotifyingRtExtCommListCollection& collection) {
  const RtExtCommListLifeTimeNotifier::Ptr notifier = rtExtCommList.lifeTimeNotifier();
  rtExtCommList.lifeTimeNotifierIs(nullptr);
  if (notifier) collection.rtExtCommListDel(notifier);
}

}  // namespace

KIV_OBJECT_DEFINE(RtExtCommListLifeTimeNotifiee)

RtExtCommListLifeTimeNotifiee::RtExtCommListLifeTimeNotifiee(
    const NotifyingRtExtCommListCollection::Ptr& collection)
    : notifyingRtExtCommListCollection_(collection) {}

RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection) {
  return Dorn::notifyingObject<RtExtCommListLifeTimeNotifiee>(collection);
}

// The notifier takes its reference to the sub-list before lifeTimeNotifierIs sets the flag that
// raises the idle count; in the other order, a concurrent release would count one user too few. An
// exception makes the table undo the insertion, so no notifier may stay behind.
void RtExtCommListLifeTimeNotifiee::handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) {
  // An observer of the collection may destroy this object while it is notified. The collection is
  // used after that, so this function keeps a reference.
  const NotifyingRtExtCommListCollection::Ptr collection = notifyingRtExtCommListCollection_;
  RtExtCommClassificationList* const rtExtCommList = rtExtCommListOf(handle.ptr());
  KIV_ASSERT(nullptr == rtExtCommList->lifeTimeNotifier(),
             "__null == rtExtCommList->lifeTimeNotifier()", "OvBgp/OvBgpCommunityList");
  const auto notifier = Dorn::notifyingObject<RtExtCommListLifeTimeNotifier>(handle);
  rtExtCommList->lifeTimeNotifierIs(notifier);
  try {
    traceLifeTime(__func__, handle.ptr(), notifier.ptr());
    collection->rtExtCommListIs(notifier);
  } catch (...) {
    withdraw(*rtExtCommList, *collection);
    throw;
  }
}

// `lifeTimeNotifier` holds the notifier until the end of the function, after the sub-list has
// released it. The observers are notified while the cycle still exists, so that they can read the
// sub-list through the notifier.
void RtExtCommListLifeTimeNotifiee::handleRemove(Dorn::DedupHandle* handle) {
  RtExtCommClassificationList* const rtExtCommList = rtExtCommListOf(handle);
  const RtExtCommListLifeTimeNotifier::Ptr lifeTimeNotifier = rtExtCommList->lifeTimeNotifier();
  traceLifeTime(__func__, handle, lifeTimeNotifier.ptr());
  KIV_ASSERT(nullptr != lifeTimeNotifier, "__null != lifeTimeNotifier", "OvBgp/OvBgpCommunityList");
  notifyingRtExtCommListCollection_->rtExtCommListDel(lifeTimeNotifier);
  rtExtCommList->lifeTimeNotifierIs(nullptr);
}

// Allocates nothing. Other members may be removed during the walk; the walk holds a reference to
// the current one. A member without a notifier was already handled, or not announced yet
// (observation was stopped while lifeTimeNotifieeIs() was still announcing members).
void RtExtCommListLifeTimeNotifiee::handleNotificationStop(
    const Kiv::Ptr<const Dorn::DedupHashTable>& table) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceLifeTime, __func__ << " dedupTable: " << table.ptr());
  table->membersVisit([this](const Dorn::DedupHandle::Ptr& member) {
    if (rtExtCommListOf(member.ptr())->lifeTimeNotifier()) handleRemove(member.ptr());
  });
}

}  // namespace Routing::Bgp
