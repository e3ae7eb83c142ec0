#include "OvBgp/ValueTable/ExtCommDedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {
namespace {

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

// If this fails, the value does not stay interned, and so must not stay listed.
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

void ExtCommDedupTable::handleInitialized() {
  producerRtList_ = notifyingRouteTargetListFactory();
  lifeTimeNotifiee_ = ExtCommLifeTimeNotifiee::Ptr(new ExtCommLifeTimeNotifiee(producerRtList_));
  dedupTable()->lifeTimeNotifieeIs(lifeTimeNotifiee_);
}

ExtCommDedupTable::Ptr extCommDedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule) {
  return Dorn::notifyingObject<ExtCommDedupTable>(rule);
}

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

// The library has the function, too, for whoever calls it without the header.
[[gnu::used]] constexpr auto dedupContentExported = &ExtComm::dedupContent;

}  // namespace

}  // namespace Routing::Bgp
