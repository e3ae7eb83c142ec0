#include "OvBgp/ValueTable/ExtCommDedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {
namespace {

// All members of an ExtCommDedupTable are ExtComm objects.
const ExtComm& extCommOf(const Dorn::DedupHandle& handle) {
  return static_cast<const ExtComm&>(handle);
}

bool isRouteTarget(const ExtComm& extComm) {
  return extComm.classification() == extCommClassificationRouteTarget;
}

RouteTarget routeTargetOf(const ExtComm& extComm) {
  return RouteTarget(extComm.getContent().value());
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommLifeTimeNotifiee)
KIV_OBJECT_DEFINE(ExtCommDedupTable)

ExtCommLifeTimeNotifiee::ExtCommLifeTimeNotifiee(const NotifyingRouteTargetList::Ptr& list)
    : DedupHashTableLifeTimeNotifiee(Interest::notable), producerRtList_(list) {}

// An observer of the set may throw after the route target was added. The table then undoes the
// insertion, so the route target must not stay in the set either.
void ExtCommLifeTimeNotifiee::handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) {
  const ExtComm& extComm = extCommOf(*handle);
  if (!isRouteTarget(extComm)) return;
  try {
    producerRtList_->rtIs(routeTargetOf(extComm));
  } catch (...) {
    producerRtList_->rtDel(routeTargetOf(extComm));
    throw;
  }
}

// isRouteTarget is checked again here, since a subclass could make any object notable.
void ExtCommLifeTimeNotifiee::handleRemove(Dorn::DedupHandle* handle) {
  const ExtComm& extComm = extCommOf(*handle);
  if (isRouteTarget(extComm)) producerRtList_->rtDel(routeTargetOf(extComm));
}

void ExtCommLifeTimeNotifiee::handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) {
  producerRtList_->rtDelAll();
}

ExtCommDedupTable::ExtCommDedupTable(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule)
    : ExtCommDedupTableBase(rule) {
  handleInitialized();
}

// The table refers to the observer by a plain pointer, so lifeTimeNotifiee_ keeps the observer
// alive. The order of the members' destruction is of no importance: either end stops the
// observation.
void ExtCommDedupTable::handleInitialized() {
  producerRtList_ = notifyingRouteTargetListFactory();
  lifeTimeNotifiee_ = ExtCommLifeTimeNotifiee::Ptr(new ExtCommLifeTimeNotifiee(producerRtList_));
  dedupTable()->lifeTimeNotifieeIs(lifeTimeNotifiee_);
}

ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule) {
  return Dorn::notifyingObject<ExtCommDedupTable>(rule);
}

// The fast path did not find the value in its first bucket, or the table locks. plainNoted() is
// called while the object is not interned and so not shared; a rule may also return an object that
// is interned already, and other threads may be reading that one.
const ExtComm* ExtCommDedupTable::dedupOutOfLine(ExtCommContent content, U32 hash) const {
  Miss miss;
  const auto isWanted = describedBy<ExtComm>(content);
  if (auto found = dedupTable()->lookupElsewhere<const ExtComm>(hash, isWanted, miss))
    return found.release();
  ExtComm::PtrConst result = dedupNew<ExtComm>(
      content, miss, [](const BgpParseExtendedCommunityRule& rule, const ExtCommContent& wanted) {
        ExtComm::Ptr made = rule.parseExtendedCommunity(wanted);
        if (made && !made->everDeduped()) made->plainNoted();
        return made;
      });
  KIV_ASSERT_IN(result, "dedupHandle", "OvBgp/OvBgpCommunity",
                "static Routing::Bgp::ExtComm::PtrConst Routing::Bgp::ExtComm::dedupContent("
                "Routing::Bgp::ExtCommDedupTable::RawPtrConst, "
                "const Routing::Bgp::ExtCommContent&)");
  return result.release();
}

namespace {

// Taking the address makes the library export a definition of the inline function, for callers that
// were compiled without its body.
[[gnu::used]] constexpr auto dedupContentExported = &ExtComm::dedupContent;

}  // namespace

}  // namespace Routing::Bgp
