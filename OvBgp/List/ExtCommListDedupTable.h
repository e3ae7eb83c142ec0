// The interning table of extended community lists, and the collection of the sets
// of route targets that it keeps beside them.
#ifndef OVBGP_LIST_EXTCOMMLISTDEDUPTABLE_H
#define OVBGP_LIST_EXTCOMMLISTDEDUPTABLE_H

#include "Kiv/Export.h"
#include "OvBgp/List/ExtCommListDedupTableBase.h"
#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"
#include "OvBgp/RouteTarget/RtExtCommListLifeTimeNotifiee.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// Usually one a process, shared by all users; lists enter by ExtCommList::dedup.
// Sub-lists of route targets have a table of their own, which is observed from the
// beginning. When the tables go, lists that users still hold stay alive,
// un-interned, and the collection ends empty.
//
// notifyingRtExtCommListCollection() is changed, and its observers run, under the
// notification lock of the route-target table, on the thread that interns or
// releases; in a process of several threads, read it only from such an observer.
// Observers may intern and release sub-lists of the same table, and communities.
// One that is told of a departure finds the sub-list neither in the collection nor
// in the table; if it interns an equal one, that is a new object with a notifier of
// its own, which stays listed. An observer that throws when a sub-list comes undoes
// its interning; when one goes, it must not throw.
//
// Notification stops when the route-target table or the observer goes, or by the
// table's lifeTimeNotifieeDel(). Setting up and stopping are for one thread.
class OV_EXPORT ExtCommListDedupTable final : public ExtCommListDedupTableBase {
  KIV_OBJECT(ExtCommListDedupTable)

 public:
  ExtCommListDedupTable();
  ~ExtCommListDedupTable() override;

  const Kiv::Ptr<Dorn::DedupHashTable>& rtExtCommClassificationListDedupTable() const noexcept {
    return rtExtCommClassificationListDedupTable_;
  }
  // The one where sub-lists of that classification are interned.
  Dorn::DedupHashTable& classificationListTable(ExtCommClassification c) const noexcept {
    return c == extCommClassificationRouteTarget ? *rtExtCommClassificationListDedupTable()
                                                 : *extCommClassificationListDedupTable();
  }
  // The sub-lists of route targets that are interned now; null once deleted.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection() const noexcept {
    return notifyingRtExtCommListCollection_;
  }
  // Null once deleted.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifiee() const noexcept {
    return rtExtCommListLifeTimeNotifiee_;
  }

  // A new collection instead of the one before, which an observer may still feed.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollectionIs();
  void notifyingRtExtCommListCollectionDel();
  // A new observer, to be registered by the caller, instead of the one before, which
  // stops unless others hold it.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifieeIs(
      const NotifyingRtExtCommListCollection::Ptr& collection);
  void rtExtCommListLifeTimeNotifieeDel();

  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                 unsigned int indent) const override;

 private:
  void handleInitialized();

  RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifiee_;
  NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollection_;
  Kiv::Ptr<Dorn::DedupHashTable> rtExtCommClassificationListDedupTable_;
};

// A new, empty table with notification on.
OV_EXPORT ExtCommListDedupTable::Ptr extCommListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
