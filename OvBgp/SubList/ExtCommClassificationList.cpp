#include "OvBgp/SubList/ExtCommClassificationList.h"

#include <algorithm>
#include <iterator>
#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/SubList/RtExtCommListLifeTimeNotifier.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommClassificationList)
KIV_OBJECT_DEFINE(RtExtCommClassificationList)
KIV_OBJECT_DEFINE(LinkBandwidthExtCommClassificationList)

ExtCommClassificationList::Ptr extCommClassificationListFactory(
    ExtCommClassification classification) {
  return Dorn::notifyingObject<ExtCommClassificationList>(classification);
}

RtExtCommClassificationList::Ptr rtExtCommClassificationListFactory(
    ExtCommClassification classification) {
  return Dorn::notifyingObject<RtExtCommClassificationList>(classification);
}

LinkBandwidthExtCommClassificationList::Ptr linkBandwidthExtCommClassificationListFactory() {
  return Dorn::notifyingObject<LinkBandwidthExtCommClassificationList>();
}

ExtCommClassificationList::ExtCommClassificationList(ExtCommClassification classification) noexcept
    : ExtCommClassificationListBase(classification) {}

void ExtCommClassificationList::commIs(const ExtComm::PtrConst& comm) {
  commAdd(comm);
  checkPrunable(comm);
}

void ExtCommClassificationList::checkPrunable(const ExtComm::PtrConst& comm) {
  if (!comm->isValid()) hasPrunableValuesIs(true);
}

bool ExtCommClassificationList::hasPrunableMembers() const {
  if (classification() == extCommClassificationLinkBandwidth && comms() >= 2) return true;
  return std::any_of(commVector().begin(), commVector().end(), [](const ExtComm::PtrConst& comm) {
    return !comm->isPlain() && !comm->isValid();
  });
}

// Link bandwidths are compared with each other, too.
void ExtCommClassificationList::commsNoted() {
  const bool isLinkBandwidth = classification() == extCommClassificationLinkBandwidth;
  for (const ExtComm::PtrConst& comm : commVector()) {
    if (isLinkBandwidth || !comm->isPlain()) checkPrunable(comm);
  }
}

std::vector<ExtComm::PtrConst> ExtCommClassificationList::prune() const {
  std::vector<ExtComm::PtrConst> valid;
  std::copy_if(commVector().begin(), commVector().end(), std::back_inserter(valid),
               [](const ExtComm::PtrConst& comm) { return comm->isValid(); });
  return valid;
}

RtExtCommClassificationList::RtExtCommClassificationList(
    ExtCommClassification classification) noexcept
    : ExtCommClassificationList(classification) {}

RtExtCommClassificationList::~RtExtCommClassificationList() = default;

// The notifier that goes is dropped last: its reference may be the last one on this
// sub-list, and no longer counts as a notifier's by then.
void RtExtCommClassificationList::lifeTimeNotifierIs(
    const Kiv::Ptr<RtExtCommListLifeTimeNotifier>& notifier) {
  if (!notifier) haveLifeTimeNotifierIs(false);
  Kiv::Ptr<RtExtCommListLifeTimeNotifier> former(notifier);
  lifeTimeNotifier_.swap(former);
  if (lifeTimeNotifier_) haveLifeTimeNotifierIs(true);
}

Kiv::Ptr<RtExtCommListLifeTimeNotifier> RtExtCommClassificationList::lifeTimeNotifier() const {
  return lifeTimeNotifier_;
}

Kiv::Ptr<RtExtCommListLifeTimeNotifier> RtExtCommClassificationList::getLifeTimeNotifier() const {
  return lifeTimeNotifier_;
}

LinkBandwidthExtCommClassificationList::LinkBandwidthExtCommClassificationList() noexcept
    : ExtCommClassificationList(extCommClassificationLinkBandwidth) {}

void LinkBandwidthExtCommClassificationList::checkPrunable(const ExtComm::PtrConst& comm) {
  const bool isValid = comm->isValid();
  if (isValid && (!linkBandwidth_ || comm->isBetterThan(linkBandwidth_))) linkBandwidth_ = comm;
  if (!isValid || comms() >= 2) hasPrunableValuesIs(true);
}

std::vector<ExtComm::PtrConst> LinkBandwidthExtCommClassificationList::prune() const {
  if (!linkBandwidth_) return {};
  return {linkBandwidth_};
}

std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList* list) {
  if (list) list->writeText(out);
  return out;
}

std::ostream& operator<<(std::ostream& out, const ExtCommClassificationList& list) {
  return out << &list;
}

}  // namespace Routing::Bgp
