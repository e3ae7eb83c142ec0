// The sets of route targets in use, as a collection that notifies observers of its changes.
#ifndef OVBGP_ROUTETARGET_NOTIFYINGRTEXTCOMMLISTCOLLECTION_H
#define OVBGP_ROUTETARGET_NOTIFYINGRTEXTCOMMLISTCOLLECTION_H

#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingSet.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "OvBgp/SubList/RtExtCommListLifeTimeNotifier.h"

namespace Routing::Bgp {

// Each element is the notifier of one interned sub-list of route targets. A user that imports
// routes by route target observes this collection instead of every route: the number of different
// sets of route targets is far smaller than that of routes.
//
// Observers are notified after each change. A notice names rtExtCommListAttribute and the notifier;
// rtExtCommListHas tells whether it was added or removed. Observers may keep the notifier.
// Observers that throw: see the rule in Kiv/NotifieeList.h.
//
// Threads: one thread, or several that a lock of the owner admits one at a time; this includes
// reading. For the collection of an ExtCommListDedupTable see the comment of that class.
class OV_EXPORT NotifyingRtExtCommListCollection final : public Kiv::PtrInterface {
  KIV_OBJECT(NotifyingRtExtCommListCollection)

 public:
  // The type of the collection.
  using KivRtExtCommList = Kiv::NotifyingSet<RtExtCommListLifeTimeNotifier::Ptr>;

  // The attribute number in the notices about `rtExtCommList`.
  static constexpr U32 rtExtCommListAttribute = 130;

  // The observers. They are part of the state that const functions may change.
  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  // The whole collection, in no order. The reference is valid as long as this object.
  const KivRtExtCommList& rtExtCommList() const noexcept { return rtExtCommList_; }
  // Whether the collection has this notifier.
  bool rtExtCommListHas(const RtExtCommListLifeTimeNotifier::Ptr& notifier) const {
    return rtExtCommList_.has(notifier);
  }
  // Adds the notifier, which must not be null. Observers are notified only if it was absent. Throws
  // std::bad_alloc, and whatever an observer throws; the collection then does not have the
  // notifier.
  void rtExtCommListIs(const RtExtCommListLifeTimeNotifier::Ptr& notifier) {
    rtExtCommList_.add(notifier);
  }
  // Removes the notifier and returns whether it was present. Observers are notified only then; what
  // they throw is traced.
  bool rtExtCommListDel(const RtExtCommListLifeTimeNotifier::Ptr& notifier) {
    return rtExtCommList_.del(notifier);
  }
  // Removes all notifiers that are present at the beginning, with one notice for each. Those that
  // an observer adds meanwhile stay.
  void rtExtCommListDelAll();

  // Prints the number of sub-lists and then each of them on its own line, in no order.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, U32 indent) const;

 private:
  mutable Kiv::NotifieeList notifieeList_;
  KivRtExtCommList rtExtCommList_{*this, rtExtCommListAttribute};
};

// A new, empty collection with notification switched on. Throws std::bad_alloc.
OV_EXPORT NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollectionFactory();

}  // namespace Routing::Bgp

#endif
