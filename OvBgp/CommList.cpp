#include "OvBgp/CommList.h"

#include "OvBgp/CommunityText.h"
#include "OvBgp/OvBgpCommunityPacketTypes.h"
#include "OvBgp/ValueListImpl.h"

#define ASSERT_INTERNED_ONCE()                                                 \
  KIV_ASSERT(dedupState() != Dorn::dedupHandleStateNeverDeduped(),             \
             "__null == ( this ) || "                                          \
             "( this )->dedupState() != Dorn::dedupHandleStateNeverDeduped()", \
             "OvBgp/OvBgpCommunityList")

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(CommList)

template class ValueList<CommListFamily>;

CommList::Ptr commListFactory() { return notifyingObject<CommList>(); }

bool CommList::noExport() const {
  ASSERT_INTERNED_ONCE();
  return noExport_;
}

bool CommList::noAdvertise() const {
  ASSERT_INTERNED_ONCE();
  return noAdvertise_;
}

bool CommList::noExportSubconfed() const {
  ASSERT_INTERNED_ONCE();
  return noExportSubconfed_;
}

Kiv::String CommList::wellKnownName(U32 community) {
  return Kiv::String(wellKnownCommunityName(community));
}

Kiv::String CommList::getStringValue(U32 community) {
  OvFmt::StackBackedBuffer<communityTextMax> text;
  text.advanceTo(writeCommunity(text.reserve(communityTextMax), community));
  return text.str();
}

void CommList::appendText(OvFmt::DynamicBufferInterface& to) const {
  appendNamedCommunities(to, members());
}

bool CommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  return anyTextMatches(
      *regex, [this](auto& text) { appendCommunities(text, members()); },
      [this](auto& text) { appendNamedCommunities(text, members()); });
}

void CommList::flagsIs() {
  noExport_ = comm(static_cast<U32>(communityNoExport));
  noAdvertise_ = comm(static_cast<U32>(communityNoAdvertise));
  noExportSubconfed_ = comm(static_cast<U32>(communityNoExportSubconfed));
}

}  // namespace Routing::Bgp
