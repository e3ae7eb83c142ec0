#include "OvBgp/RouteTarget/RtExtCommListLifeTimeNotifiee.h"

#include "BgpCommon/Private/OvBgpTrace.h"
#include "Dorn/DedupHashTable.h"
#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"

namespace Routing::Bgp {
namespace {

RtExtCommClassificationList* rtExtCommListOf(Dorn::DedupHandle* handle) {
  return static_cast<RtExtCommClassificationList*>(handle);
}

void traceLifeTime(const char* function, const Dorn::DedupHandle* handle,
                   const RtExtCommListLifeTimeNotifier* notifier) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceLifeTime,
            function << " handle: " << handle << " rtExtCommListLifeTimeNotifier: " << notifier);
}

// Breaks the cycle of a sub-list and its notifier before it tells observers, as they
// could fail again. There is no notifier left if one of them has stopped all this.
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

// The notifier's reference comes before the sub-list's flag that says so. If this
// fails, the sub-list does not stay interned.
void RtExtCommListLifeTimeNotifiee::handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) {
  // An observer may let go of this one.
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

// The notifier outlives the moment at which its sub-list drops it.
void RtExtCommListLifeTimeNotifiee::handleRemove(Dorn::DedupHandle* handle) {
  RtExtCommClassificationList* const rtExtCommList = rtExtCommListOf(handle);
  const RtExtCommListLifeTimeNotifier::Ptr lifeTimeNotifier = rtExtCommList->lifeTimeNotifier();
  traceLifeTime(__func__, handle, lifeTimeNotifier.ptr());
  KIV_ASSERT(nullptr != lifeTimeNotifier, "__null != lifeTimeNotifier", "OvBgp/OvBgpCommunityList");
  notifyingRtExtCommListCollection_->rtExtCommListDel(lifeTimeNotifier);
  rtExtCommList->lifeTimeNotifierIs(nullptr);
}

// Needs no memory. Members may leave during the walk, which holds the one that it is
// at. One that has no notifier was seen already, or is still to be announced:
// observation stops while it begins.
void RtExtCommListLifeTimeNotifiee::handleNotificationStop(
    const Kiv::Ptr<const Dorn::DedupHashTable>& table) {
  KIV_TRACE(ovBgpTrace, ovBgpTraceLifeTime, __func__ << " dedupTable: " << table.ptr());
  table->membersVisit([this](const Dorn::DedupHandle::Ptr& member) {
    if (rtExtCommListOf(member.ptr())->lifeTimeNotifier()) handleRemove(member.ptr());
  });
}

}  // namespace Routing::Bgp
