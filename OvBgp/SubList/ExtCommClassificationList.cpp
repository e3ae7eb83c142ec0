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

// The member is appended first, because checkPrunable of link bandwidths counts it.
void ExtCommClassificationList::commIs(const ExtComm::PtrConst& comm) {
  commAdd(comm);
  checkPrunable(comm);
}

void ExtCommClassificationList::checkPrunable(const ExtComm::PtrConst& comm) {
  if (!comm->isValid()) hasPrunableValuesIs(true);
}

// Link bandwidths are recognised by the classification, not by the class, so that a general
// sub-list of that classification gives the same answer. isPlain() is checked first, since it
// spares the virtual call for most members.
bool ExtCommClassificationList::hasPrunableMembers() const {
  if (classification() == extCommClassificationLinkBandwidth && comms() >= 2) return true;
  return std::any_of(commVector().begin(), commVector().end(), [](const ExtComm::PtrConst& comm) {
    return !comm->isPlain() && !comm->isValid();
  });
}

// Plain members are valid and need no check. Link bandwidths are all checked, since checkPrunable
// also finds the best of them.
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

// The flag that raises the idle count must be set only while the notifier holds its reference, so
// it is cleared before the former notifier is released and set after the new one is stored.
// `former` is released at the end of the function; its reference may be the last one to this
// sub-list, so no member may be used after that.
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
  return lifeTimeNotifier();
}

LinkBandwidthExtCommClassificationList::LinkBandwidthExtCommClassificationList() noexcept
    : ExtCommClassificationList(extCommClassificationLinkBandwidth) {}

// Runs while the sub-list is built. An invalid member never becomes the best one, even if it is the
// only one.
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
