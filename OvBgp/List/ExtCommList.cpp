#include "OvBgp/List/ExtCommList.h"

#include <algorithm>
#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/List/Private/ExtCommSerialize.h"
#include "OvBgp/List/Private/ListText.h"
#include "OvFmt/DynamicBuffer.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {
namespace {

// The buffer for the text of a list. Lists on a route have few members, so their text fits on
// the stack.
using MatchText = OvFmt::StackBackedBuffer<256>;

// The format in which members write the text that `matchMode` selects.
ExtComm::StrepFormat formatOf(MatchMode matchMode) {
  ExtComm::StrepFormat format;
  format.strepFormatDefaultIs(matchMode == MatchMode::policy);
  format.strepFormatClassificationIs(matchMode != MatchMode::policy);
  format.strepFormatUIIs(matchMode == MatchMode::ui);
  return format;
}

// Appends the user-interface texts of the members that policies match by that text.
void appendUIText(OvFmt::DynamicBufferInterface& to, const ExtCommVector<ExtComm>& comms) {
  bool isFirst = true;
  for (const ExtComm::PtrConst& comm : comms) {
    if (!comm->policyMatchStrepUI()) continue;
    if (!isFirst) to.append(' ');
    isFirst = false;
    comm->appendPolicyText(to, formatOf(MatchMode::ui));
  }
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommList)

ExtCommList::Ptr extCommListFactory() { return Dorn::notifyingObject<ExtCommList>(); }

// Clears two flags that grouping computes anew. The others may remain set: members are only
// ever added to a list, so what was true of some member stays true.
void ExtCommList::groupingStarts() noexcept {
  commVectorAttrs_.hasLinkBandwidthIs(false);
  commVectorAttrs_.hasPolicyMatchStrepUICommunitiesIs(false);
}

// `dedupMode` is false for a list that was rebuilt from a store. Such a list is only shown, so
// nothing is recorded for policies.
void ExtCommList::commAsked(const ExtComm& comm, bool dedupMode) {
  if (dedupMode && comm.policyMatchStrepUI()) {
    commVectorAttrs_.hasPolicyMatchStrepUICommunitiesIs(true);
  }
  if (comm.isLinkBandwidthWithUnspecifiedAsNumber()) {
    commVectorAttrs_.hasLinkBandwidthWithUnspecifiedAsNumberIs(true);
  }
}

// A sub-list that was built by hand may have its flag set only because a member was appended
// twice. The repeats are gone now, so the members are looked at again.
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

// Uses the recorded counts and flags only, so it reads no member.
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

// Counts and flags of the members are computed by interning, so before that they would announce no
// member of a list that has some. The counted number assumes a pruned list. Counting the selected
// members shows whether the list is one.
bool ExtCommList::fitsAttribute(Serialization which) const {
  if (!which.all() && !everDeduped()) return false;
  const U32 announced = serializableCommunities(which);
  if (announced == 0 || which.all()) return announced <= maxSerializableComms;
  const auto written =
      std::count_if(commVector().begin(), commVector().end(),
                    [which](const ExtComm::PtrConst& c) { return serializable(c, which); });
  return announced <= maxSerializableComms && static_cast<U32>(written) == announced;
}

// No lock is needed: an interned list does not change, and before that only one thread has it.
// The text is terminated in the buffer, so that it is not copied to a string for the match.
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

// The texts are made one after the other, each only if the texts before did not match. Most
// expressions match the first.
bool ExtCommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  return matchExtCommList(this, MatchMode::policy, regex) ||
         matchExtCommList(this, MatchMode::classification, regex) ||
         (hasPolicyMatchStrepUICommunities() && matchExtCommList(this, MatchMode::ui, regex));
}

std::ostream& operator<<(std::ostream& out, const ExtCommList* list) {
  return writeListOrNull(out, list);
}

std::ostream& operator<<(std::ostream& out, const ExtCommList& list) { return out << &list; }

}  // namespace Routing::Bgp
