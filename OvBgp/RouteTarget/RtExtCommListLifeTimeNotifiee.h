// The observer of a table that keeps the collection of the sets of route targets in use.
#ifndef OVBGP_ROUTETARGET_RTEXTCOMMLISTLIFETIMENOTIFIEE_H
#define OVBGP_ROUTETARGET_RTEXTCOMMLISTLIFETIMENOTIFIEE_H

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Kiv/Export.h"
#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"

namespace Routing::Bgp {

// Observes a table of route-target sub-lists and keeps one notifier for each member in its
// collection.
//
//   table of sub-lists  --observed by-->  this class  --adds, removes-->  collection  -->  users
//
// When the observation stops, for whatever reason, the observer removes its notifiers from the
// collection. The members stay interned, without notifiers.
class OV_EXPORT RtExtCommListLifeTimeNotifiee final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(RtExtCommListLifeTimeNotifiee)

 public:
  // An observer that keeps a reference to `collection`. It observes nothing until it is registered
  // with a table.
  explicit RtExtCommListLifeTimeNotifiee(const NotifyingRtExtCommListCollection::Ptr& collection);

  // Makes the notifier of a new member and adds it to the collection. If memory is short or an
  // observer of the collection throws, nothing of it stays, and the member does not stay interned.
  // Stops the process if the sub-list already has a notifier.
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override;
  // Removes the notifier of a member that leaves the table. What observers of the collection throw
  // is traced. Stops the process if the sub-list has no notifier.
  void handleRemove(Dorn::DedupHandle* handle) override;
  // Removes the notifiers of all members. Allocates nothing.
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>& table) override;

 private:
  const NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollection_;
};

// A new observer with notification switched on, not registered yet. It keeps a reference to
// `collection`. Throws std::bad_alloc.
OV_EXPORT RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection);

}  // namespace Routing::Bgp

#endif
