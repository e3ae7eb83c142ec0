// The interning table of extended communities, the set of interned route targets beside it, and the
// body of ExtComm::dedupContent.
#ifndef OVBGP_VALUETABLE_EXTCOMMDEDUPTABLE_H
#define OVBGP_VALUETABLE_EXTCOMMDEDUPTABLE_H

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Kiv/Export.h"
#include "Kiv/Inline.h"
#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTableBase.h"

namespace Routing::Bgp {

// The observer of an ExtCommDedupTable that keeps the table's set of route targets up to date.
//
// The set has copies of the values and no reference to an object, so it keeps nothing interned. The
// observer follows only notable members, which ExtComm's constructor makes of route targets.
class OV_EXPORT ExtCommLifeTimeNotifiee final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(ExtCommLifeTimeNotifiee)

 public:
  // An observer that keeps a reference to `list`. It observes nothing until it is registered with a
  // table.
  explicit ExtCommLifeTimeNotifiee(const NotifyingRouteTargetList::Ptr& list);

  // Adds a new route target to the set. If that throws, the set does not have it, and the table
  // undoes the insertion.
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override;
  // Removes a route target that leaves the table from the set.
  void handleRemove(Dorn::DedupHandle* handle) override;
  // Empties the set.
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>& table) override;

 private:
  const NotifyingRouteTargetList::Ptr producerRtList_;
};

// The interning table of extended communities of eight octets. A process usually has one, shared by
// all users, who get values by ExtComm::dedupContent. Destroying the table empties its set of route
// targets; values that users still hold stay alive, no longer interned.
//
// Threads: any thread may intern if the table is for several (ExtCommDedupTableBase).
// producerRtList() is changed, and its observers are called, on the thread that interns or releases
// a route target, under the notification lock of the table. In a process of several threads it may
// be read only there, that is, in such an observer.
//
// Observers of producerRtList() may intern and release values of the same table. While an observer
// is notified that a route target was removed, neither the set nor the table has it. If the
// observer interns it again, it gets a new object, and the set has the route target again. An
// observer that throws on an addition makes the interning fail; on a removal its exception is
// traced.
class OV_EXPORT ExtCommDedupTable final : public ExtCommDedupTableBase {
  KIV_OBJECT(ExtCommDedupTable)

 public:
  // An empty table. Users call extCommDedupTableFactory instead.
  explicit ExtCommDedupTable(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

  // The set of route targets that are interned now. The set lives as long as somebody holds it.
  const NotifyingRouteTargetList::Ptr& producerRtList() const noexcept { return producerRtList_; }
  // The observer that keeps the set.
  const ExtCommLifeTimeNotifiee::Ptr& lifeTimeNotifiee() const noexcept {
    return lifeTimeNotifiee_;
  }

 private:
  friend class ExtComm;

  // Called by the constructor. Makes set and observer before the first value can be interned.
  void handleInitialized();
  // Slow path of dedupContent. Takes and returns registers only (hence the raw pointer), so that
  // the inlined fast path needs no stack frame. Returns a counted reference that the caller must
  // adopt; never null.
  const ExtComm* dedupOutOfLine(ExtCommContent content, U32 hash) const;

  NotifyingRouteTargetList::Ptr producerRtList_;
  ExtCommLifeTimeNotifiee::Ptr lifeTimeNotifiee_;
};

// A new, empty table with notification switched on. `rule` is the root of the rule tree that makes
// the objects. Throws std::bad_alloc.
OV_EXPORT ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

// Fast path: most routes have communities that are already interned, and a table for one thread
// finds most of them in the first bucket. This case is inlined into the caller and makes no call.
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
