// A set of route targets that notifies observers of its changes.
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

// The set of all interned route targets, if it belongs to an ExtCommDedupTable; users may also keep
// sets of their own. It is a set without order, although the interface calls it a list.
//
// Observers are notified after each change. A notice names rtAttribute and the route target; rtHas
// tells whether the route target was added or removed. Observers that throw: see the rule in
// Kiv/NotifieeList.h.
//
// Threads: one thread, or several that a lock of the owner admits one at a time; this includes
// reading. For the set of an ExtCommDedupTable see the comment of that class.
class OV_EXPORT NotifyingRouteTargetList final : public Kiv::PtrInterface {
  KIV_OBJECT(NotifyingRouteTargetList)

 public:
  // The type of the set.
  using RtSet = Kiv::NotifyingSet<RouteTarget>;

  // The attribute number in the notices about `rt`.
  static constexpr U32 rtAttribute = 130;

  // The observers. They are part of the state that const functions may change.
  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  // The whole set, in no order. The reference is valid as long as this object.
  const RtSet& rt() const noexcept { return rt_; }
  // Whether the set has this route target.
  bool rtHas(const RouteTarget& routeTarget) const { return rt_.has(routeTarget); }
  // Adds the route target. Observers are notified only if it was absent. Throws std::bad_alloc, and
  // whatever an observer throws; the set then does not have the route target.
  void rtIs(const RouteTarget& routeTarget) { rt_.add(routeTarget); }
  // Removes the route target and returns whether it was present. Observers are notified only then;
  // what they throw is traced.
  bool rtDel(const RouteTarget& routeTarget) { return rt_.del(routeTarget); }
  // Removes all route targets that are present at the beginning, with one notice for each. Those
  // that an observer adds meanwhile stay.
  void rtDelAll();

  // Prints the number of route targets and then each of them on its own line, in no order.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, U32 indent) const;

 private:
  mutable Kiv::NotifieeList notifieeList_;
  RtSet rt_{*this, rtAttribute};
};

// A new, empty set with notification switched on. Throws std::bad_alloc.
OV_EXPORT NotifyingRouteTargetList::Ptr notifyingRouteTargetListFactory();

}  // namespace Routing::Bgp

#endif
