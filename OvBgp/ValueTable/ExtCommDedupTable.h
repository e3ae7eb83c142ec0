// The interning table of extended communities, and the set of route targets that
// it keeps beside them.
#ifndef OVBGP_VALUETABLE_EXTCOMMDEDUPTABLE_H
#define OVBGP_VALUETABLE_EXTCOMMDEDUPTABLE_H

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Kiv/Export.h"
#include "Kiv/Inline.h"
#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTableBase.h"

namespace Routing::Bgp {

// Keeps a list of route targets equal to those that are interned in the table that
// it observes. It holds copies of the values and no reference to any object.
class OV_EXPORT ExtCommLifeTimeNotifiee final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(ExtCommLifeTimeNotifiee)

 public:
  explicit ExtCommLifeTimeNotifiee(const NotifyingRouteTargetList::Ptr& list);

  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override;
  void handleRemove(Dorn::DedupHandle* handle) override;
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>& table) override;

 private:
  const NotifyingRouteTargetList::Ptr producerRtList_;
};

// Usually one a process, shared by all users; values come by ExtComm::dedupContent.
// When it goes, values that users still hold stay alive, un-interned, and its list
// of route targets ends empty.
//
// producerRtList() is changed, and its observers run, under the notification lock
// of the table, on the thread that interns or releases; in a process of several
// threads, read it only from such an observer. Observers may intern and release
// values of the same table. One that is told of a route target's departure finds
// it neither in the list nor in the table; if it interns it again, it gets a new
// object, which stays listed. An observer that throws when a route target comes
// undoes its interning; when one goes, it must not throw.
class OV_EXPORT ExtCommDedupTable final : public ExtCommDedupTableBase {
  KIV_OBJECT(ExtCommDedupTable)

 public:
  explicit ExtCommDedupTable(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

  // The route targets that are interned now.
  const NotifyingRouteTargetList::Ptr& producerRtList() const noexcept { return producerRtList_; }
  const ExtCommLifeTimeNotifiee::Ptr& lifeTimeNotifiee() const noexcept {
    return lifeTimeNotifiee_;
  }

 private:
  friend class ExtComm;

  void handleInitialized();
  // All that dedupContent does, for what is not found at once. Without parameters or
  // results in memory, which would cost the other ones something, too: the caller adopts
  // the reference. Never null.
  const ExtComm* dedupOutOfLine(ExtCommContent content, U32 hash) const;

  NotifyingRouteTargetList::Ptr producerRtList_;
  ExtCommLifeTimeNotifiee::Ptr lifeTimeNotifiee_;
};

// A new, empty table of what `rule` makes, with notification on.
OV_EXPORT ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

// What is held already, which is the rule, is found without calling a function, or most
// of it.
KIV_INLINE ExtComm::PtrConst ExtComm::dedupContent(const ExtCommDedupTable* table,
                                                   const ExtCommContent& content) {
  const U32 hash = hashOf(content);
  const auto isWanted = ExtCommDedupTable::describedBy<ExtComm>(content);
  if (PtrConst found = table->dedupTable()->lookupAtHome<const ExtComm>(hash, isWanted))
    return found;
  return PtrConst(table->dedupOutOfLine(content, hash), Kiv::adopt);
}

}  // namespace Routing::Bgp

#endif
