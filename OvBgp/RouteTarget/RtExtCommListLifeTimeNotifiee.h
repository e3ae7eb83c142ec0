// Keeps the collection of the sets of route targets in use.
#ifndef OVBGP_ROUTETARGET_RTEXTCOMMLISTLIFETIMENOTIFIEE_H
#define OVBGP_ROUTETARGET_RTEXTCOMMLISTLIFETIMENOTIFIEE_H

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Kiv/Export.h"
#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"

namespace Routing::Bgp {

// Observes a table of route-target sub-lists, and keeps one notifier a member in
// its collection. When it stops, by whatever way, the collection ends empty of them
// and the members stay interned, without notifiers.
class OV_EXPORT RtExtCommListLifeTimeNotifiee final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(RtExtCommListLifeTimeNotifiee)

 public:
  explicit RtExtCommListLifeTimeNotifiee(const NotifyingRtExtCommListCollection::Ptr& collection);

  // A sub-list that has a notifier already stops the process.
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override;
  // A sub-list that has no notifier stops the process.
  void handleRemove(Dorn::DedupHandle* handle) override;
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>& table) override;

 private:
  const NotifyingRtExtCommListCollection::Ptr notifyingRtExtCommListCollection_;
};

// A new observer that feeds `collection`, not registered yet, with notification on.
OV_EXPORT RtExtCommListLifeTimeNotifiee::Ptr rtExtCommListLifeTimeNotifieeFactory(
    const NotifyingRtExtCommListCollection::Ptr& collection);

}  // namespace Routing::Bgp

#endif
