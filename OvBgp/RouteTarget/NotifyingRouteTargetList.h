// A set of route targets that tells observers of its changes.
#ifndef OVBGP_ROUTETARGET_NOTIFYINGROUTETARGETLIST_H
#define OVBGP_ROUTETARGET_NOTIFYINGROUTETARGETLIST_H

#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingSet.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "Routing/Bgp/RouteTarget.h"

namespace Routing::Bgp {

// Observers (Kiv/NotifieeList.h) hear of attribute `rtAttribute` at the route
// target that came or went, after the change: rtHas says whether it is there now.
//
// Threads: one, or those that a lock around the owner lets in one by one; reading
// counts, too. The list of an ExtCommDedupTable is such: see there.
class OV_EXPORT NotifyingRouteTargetList final : public Kiv::PtrInterface {
  KIV_OBJECT(NotifyingRouteTargetList)

 public:
  using RtSet = Kiv::NotifyingSet<RouteTarget>;

  // The number under which observers hear of `rt`.
  static constexpr U32 rtAttribute = 130;

  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  const RtSet& rt() const noexcept { return rt_; }
  bool rtHas(const RouteTarget& routeTarget) const { return rt_.has(routeTarget); }
  // Tells observers if it was not there.
  void rtIs(const RouteTarget& routeTarget) { rt_.add(routeTarget); }
  // Whether it was there; only then are observers told.
  bool rtDel(const RouteTarget& routeTarget) { return rt_.del(routeTarget); }
  // Deletes, one by one, those that are there when it begins.
  void rtDelAll();

  // Prints how many there are and then each on a line of its own, in no order.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, U32 indent) const;

 private:
  mutable Kiv::NotifieeList notifieeList_;
  RtSet rt_{*this, rtAttribute};
};

// A new, empty list with notification on.
OV_EXPORT NotifyingRouteTargetList::Ptr notifyingRouteTargetListFactory();

}  // namespace Routing::Bgp

#endif
