#include "OvBgp/List/ExtCommList.h"

#include <algorithm>
#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/List/Private/ExtCommSerialize.h"
#include "OvFmt/DynamicBuffer.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {
namespace {

// Lists on a route have a few communities; their text fits without the heap.
using MatchText = OvFmt::StackBackedBuffer<256>;

ExtComm::StrepFormat formatOf(MatchMode matchMode) {
  ExtComm::StrepFormat format;
  format.strepFormatDefaultIs(matchMode == MatchMode::policy);
  format.strepFormatClassificationIs(matchMode != MatchMode::policy);
  format.strepFormatUIIs(matchMode == MatchMode::ui);
  return format;
}

// The user-interface texts of the members that are matched by them.
void appendUIText(OvFmt::DynamicBufferInterface& to, const ExtCommVector<ExtComm>& comms) {
  bool isFirst = true;
  for (const ExtComm::PtrConst& comm : comms) {
    if (!comm->policyMatchStrepUI()) continue;
    if (!isFirst) to.append(' ');
    isFirst = false;
    comm->appendForPolicy(to, formatOf(MatchMode::ui));
  }
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommList)

ExtCommList::Ptr extCommListFactory() { return Dorn::notifyingObject<ExtCommList>(); }

// The flag for unspecified AS numbers, once set, stays.
void ExtCommList::groupingStarts() noexcept {
  commVectorAttrs_.hasLinkBandwidthIs(false);
  commVectorAttrs_.hasPolicyMatchStrepUICommunitiesIs(false);
}

void ExtCommList::commAsked(const ExtComm& comm, bool dedupMode) {
  if (dedupMode && comm.policyMatchStrepUI()) {
    commVectorAttrs_.hasPolicyMatchStrepUICommunitiesIs(true);
  }
  if (comm.isLinkBandwidthWithUnspecifiedAsNumber()) {
    commVectorAttrs_.hasLinkBandwidthWithUnspecifiedAsNumberIs(true);
  }
}

void ExtCommList::partFinished(const ExtCommClassificationList& part) {
  if (part.hasPrunableValues() && part.hasPrunableMembers()) {
    commVectorAttrs_.hasPrunableValuesIs(true);
  }
  if (part.classification() == extCommClassificationLinkBandwidth) {
    commVectorAttrs_.hasLinkBandwidthIs(true);
  }
  if (part.classification() == extCommClassificationOriginValidationState) {
    commVectorAttrs_.hasOriginValidationStateIs(true);
  }
}

ExtCommList::Serialization ExtCommList::serialization(bool includeNonTransitive,
                                                      bool includeLinkBandwidth,
                                                      bool includeOriginAsValidity) {
  Serialization which;
  which.allIs(includeNonTransitive);
  which.transitiveIs(!includeNonTransitive);
  which.linkBandwidthIs(!includeNonTransitive && includeLinkBandwidth);
  which.originAsValidityIs(!includeNonTransitive && includeOriginAsValidity);
  return which;
}

bool ExtCommList::serializable(const ExtComm::PtrConst& comm, Serialization which) {
  if (which.all()) return true;
  if (which.transitive() && comm->getContent().transitiveFlag()) return true;
  switch (comm->classification()) {
    case extCommClassificationLinkBandwidth:
      return which.linkBandwidth();
    case extCommClassificationOriginValidationState:
      return which.originAsValidity();
    default:
      return false;
  }
}

U32 ExtCommList::serializableCommunities(Serialization which) const {
  if (which.all()) return totalCommunities();
  return (which.transitive() ? totalTransitiveCommunities() : 0) +
         (which.linkBandwidth() && hasLinkBandwidth() ? 1 : 0) +
         (which.originAsValidity() && hasOriginValidationState() ? 1 : 0);
}

Kiv::String ExtCommList::serialize(Serialization which) const {
  return serializeExtComms<ExtCommFamily>(
      *this, serializableCommunities(which),
      [which](const ExtComm::PtrConst& comm) { return serializable(comm, which); });
}

bool ExtCommList::fitsAttribute(Serialization which) const {
  const U32 announced = serializableCommunities(which);
  if (announced == 0 || which.all()) return announced <= maxSerializableComms;
  const auto written =
      std::count_if(commVector().begin(), commVector().end(),
                    [which](const ExtComm::PtrConst& c) { return serializable(c, which); });
  return announced <= maxSerializableComms && static_cast<U32>(written) == announced;
}

// An interned list does not change, and before that one thread has it, so its
// members are read where they stand.
bool matchExtCommList(const ExtCommList* list, MatchMode matchMode,
                      const RouteMap::PosixRegex* regex) {
  MatchText strVal;
  if (matchMode == MatchMode::ui) {
    appendUIText(strVal, list->commVector());
  } else {
    list->appendPolicyText(strVal, formatOf(matchMode));
  }
  KIV_ASSERT(!strVal.empty() || matchMode != MatchMode::ui,
             "!strVal.empty() || matchMode != MatchMode::ui", "OvBgp/OvBgpCommunityList");
  strVal.append('\0');
  return regex->execute(strVal.view().data()) == 0;
}

bool ExtCommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  return matchExtCommList(this, MatchMode::policy, regex) ||
         matchExtCommList(this, MatchMode::classification, regex) ||
         (hasPolicyMatchStrepUICommunities() && matchExtCommList(this, MatchMode::ui, regex));
}

std::ostream& operator<<(std::ostream& out, const ExtCommList* list) {
  if (!list) return out.write("NULL", 4);
  list->writeText(out);
  return out;
}

std::ostream& operator<<(std::ostream& out, const ExtCommList& list) { return out << &list; }

}  // namespace Routing::Bgp
