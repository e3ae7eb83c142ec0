#include "OvBgp/SubList/ExtCommClassificationListBase.h"

#include "BgpCommon/BgpHashIdentity.h"
#include "BgpCommon/BgpHashMixImpl.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"
#include "OvBgp/SubList/Private/ExtCommMembers.h"
#include "OvBgp/SubList/Private/SubListMaking.h"

namespace Routing::Bgp {
namespace {

// Only sub-lists of eight-octet communities must be sorted before hash() is called. The interface
// gives the other family no such precondition.
void assertHashable(const ExtCommClassificationList& list) {
  KIV_ASSERT_IN(list.commVectorSorted(), "commVectorSorted()", "OvBgp/OvBgpCommunityList",
                "virtual U32 Routing::Bgp::ExtCommClassificationList::hash() const");
}
void assertHashable(const ExtCommIp6ClassificationList&) {}

}  // namespace

// One override per class, because partDestroy must know the exact class: the size of the object is
// part of the size of the allocation to free. They are here, and not in the sources of the classes,
// to have all four in one place.
void ExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void RtExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void LinkBandwidthExtCommClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }
void ExtCommIp6ClassificationList::zeroReferencesIs() noexcept { partDestroy(*this); }

template <class Family>
ExtCommClassificationListBase<Family>::~ExtCommClassificationListBase() = default;

template <class Family>
Kiv::String ExtCommClassificationListBase<Family>::toStrep() const {
  return textOf(*this);
}

template <class Family>
void ExtCommClassificationListBase<Family>::writeText(std::ostream& out) const {
  write(out, stringValue(classification()));
  write(out, " : ");
  writeJoined(out, commVector_);
}

// The values are a contract, hence the slow byte hash; tables use probeHash().
template <class Family>
U32 ExtCommClassificationListBase<Family>::hash() const {
  assertHashable(self());
  BgpCommon::BgpHashMixImpl mix;
  for (const ValuePtr& comm : commVector_) BgpCommon::addIdentity(mix, comm.ptr());
  return mix.hash();
}

// Sorted members have one order only, so equal sets are equal sequences of addresses.
template <class Family>
bool ExtCommClassificationListBase<Family>::compare(Dorn::DedupHandle::RawPtrConst other) const {
  ASSERT_LIST(self().commVectorSorted(), "commVectorSorted()");
  return samePointers(commVector_, static_cast<const ClassificationList*>(other)->commVector());
}

template <class Family>
bool ExtCommClassificationListBase<Family>::compareByContent(
    const Dorn::DedupContentHandle& key) const {
  return sameObjects(pointersIn(commVector_),
                     static_cast<const ExtCommListContent<Value>&>(key).comms());
}

template <class Family>
U32 ExtCommClassificationListBase<Family>::probeHash() const {
  return addressHash(pointersIn(commVector_));
}

// The only instantiations; the headers declare them as extern.
template class ExtCommClassificationListBase<ExtCommFamily>;
template class ExtCommClassificationListBase<ExtCommIp6Family>;

}  // namespace Routing::Bgp
