// The table that interns lists of extended communities, and the collection of the sets of
// route targets in use, which the table maintains.
#ifndef OVBGP_LIST_EXTCOMMLISTDEDUPTABLE_H
#define OVBGP_LIST_EXTCOMMLISTDEDUPTABLE_H

#include "Kiv/Export.h"
#include "OvBgp/List/ExtCommListDedupTableBase.h"
#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"
#include "OvBgp/RouteTarget/RtExtCommListLifeTimeNotifiee.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// The table of extended lists and their sub-lists. A process usually has one, shared by all
// users. Lists are interned by ExtCommList::dedup and its siblings.
//
// Sub-lists of route targets have a hash table of their own. From the constructor on, an
// observer of it gives each of these sub-lists a notifier and keeps the notifiers in a
// collection, notifyingRtExtCommListCollection(). Users can thus observe which sets of route
// targets are in use.
//
// Threads. The collection changes, and its observers run, under the notification lock of the
// route-target table, on the thread that interns or releases a sub-list. In a process of
// several threads, read the collection only from such an observer. Only one thread may set
// up and stop notification.
//
// Observers may intern and release sub-lists of the same table, and values. An observer that is
// notified of a removal finds the sub-list neither in the collection nor in the table. If it
// interns an equal sub-list, the result is a new object with a notifier of its own, which stays in
// the collection. An observer that throws while it is notified of an insertion undoes the
// insertion. An exception that it throws on a removal is traced.
//
// The end. If the table is destroyed, lists that users still hold stay alive. They are no longer
// interned, and the collection becomes empty. Notification also stops when the observer is
// destroyed, or by lifeTimeNotifieeDel() of the route-target table.
class OV_EXPORT ExtCommListDedupTable final : public ExtCommListDedupTableBase {
  KIV_OBJECT(ExtCommListDedupTable)

 public:
  // An empty table with its collection and its observer. Users call
  // extCommListDedupTableFactory() instead. Throws std::bad_alloc.
  ExtCommListDedupTable();
  // Stops the observer, which empties the collection, and detaches the lists.
  ~ExtCommListDedupTable() override;

  // The hash table of the sub-lists of route targets; never null.
  const Kiv::Ptr<Dorn::DedupHashTable>& rtExtCommClassificationListDedupTable() const noexcept {
    return rtExtCommClassificationListDedupTable_;
  }
  // The hash table that interns the sub-lists of classification `c`.
  Dorn::DedupHashTable& classificationListTable(ExtCommClassification c) const noexcept {
    return c == extCommClassificationRouteTarget ? *rtExtCommClassificationListDedupTable()
                                                 : *extCommClassificationListDedupTable();
  }
  // The notifiers of the interned sub-lists of route targets; null once deleted.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollection() const noexcept {
    return notifyingRtExtCommListCollection_;
  }
  // The observer that maintains the collection; null once deleted.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifiee() const noexcept {
    return rtExtCommListLifeTimeNotifiee_;
  }

  // Replaces the collection by a new, empty one, and returns it. A registered observer continues to
  // maintain the former collection. Throws std::bad_alloc.
  const NotifyingRtExtCommListCollection::Ptr& notifyingRtExtCommListCollectionIs();
  // Drops the reference to the collection, which lives on while its observer does.
  void notifyingRtExtCommListCollectionDel();
  // Replaces the observer by a new one that maintains `collection`, and returns it. The caller
  // registers it with lifeTimeNotifieeIs() of the route-target table. The former observer is
  // destroyed, and so stops, unless others hold it. Throws std::bad_alloc.
  const RtExtCommListLifeTimeNotifiee::Ptr& rtExtCommListLifeTimeNotifieeIs(
      const NotifyingRtExtCommListCollection::Ptr& collection);
  // Drops the reference to the observer, which is destroyed, and so stops, unless others hold
  // it.
  void rtExtCommListLifeTimeNotifieeDel();

  // Prints as the base does, and then the table of the sub-lists of route targets.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                 unsigned int indent) const override;

 private:
  // Makes collection and observer and registers the observer. Run by the constructor.
  void handleInitialized();

  RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifiee_;
  NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollection_;
  Kiv::Ptr<Dorn::DedupHashTable> rtExtCommClassificationListDedupTable_;
};

// A new, empty table, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommListDedupTable::Ptr extCommListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
