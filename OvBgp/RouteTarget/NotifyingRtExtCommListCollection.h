// The sets of route targets in use, as a set that tells observers of its changes.
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

// Observers (Kiv/NotifieeList.h) hear of attribute `rtExtCommListAttribute` at the
// notifier that came or went, after the change: rtExtCommListHas says whether it is
// there now. They may keep it.
//
// Threads: one, or those that a lock around the owner lets in one by one; reading
// counts, too. The collection of an ExtCommListDedupTable is such: see there.
class OV_EXPORT NotifyingRtExtCommListCollection final : public Kiv::PtrInterface {
  KIV_OBJECT(NotifyingRtExtCommListCollection)

 public:
  using KivRtExtCommList = Kiv::NotifyingSet<RtExtCommListLifeTimeNotifier::Ptr>;

  // The number under which observers hear of `rtExtCommList`.
  static constexpr U32 rtExtCommListAttribute = 130;

  Kiv::NotifieeList* notifieeList() const noexcept override { return &notifieeList_; }

  const KivRtExtCommList& rtExtCommList() const noexcept { return rtExtCommList_; }
  bool rtExtCommListHas(const RtExtCommListLifeTimeNotifier::Ptr& notifier) const {
    return rtExtCommList_.has(notifier);
  }
  // Tells observers if it was not there.  Requires: not null.
  void rtExtCommListIs(const RtExtCommListLifeTimeNotifier::Ptr& notifier) {
    rtExtCommList_.add(notifier);
  }
  // Whether it was there; only then are observers told.
  bool rtExtCommListDel(const RtExtCommListLifeTimeNotifier::Ptr& notifier) {
    return rtExtCommList_.del(notifier);
  }
  // Deletes, one by one, those that are there when it begins.
  void rtExtCommListDelAll();

  // Prints how many there are and then each on a line of its own, in no order.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context, U32 indent) const;

 private:
  mutable Kiv::NotifieeList notifieeList_;
  KivRtExtCommList rtExtCommList_{*this, rtExtCommListAttribute};
};

// A new, empty collection with notification on.
OV_EXPORT NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollectionFactory();

}  // namespace Routing::Bgp

#endif
