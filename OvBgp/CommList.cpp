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
namespace {

// What a list notes of its members.
constexpr U8 noExportNote = 1;
constexpr U8 noAdvertiseNote = 2;
constexpr U8 noExportSubconfedNote = 4;

}  // namespace

KIV_OBJECT_DEFINE(CommList)

static_assert(sizeof(CommList) == 16 + 2 * sizeof(void*),
              "a list of n communities takes 24 + 4 n octets on 64-bit builds");

template class ValueList<CommListFamily>;

CommList::Ptr commListFactory() { return notifyingObject<CommList>(); }

bool CommList::noExport() const {
  ASSERT_INTERNED_ONCE();
  return (notes() & noExportNote) != 0;
}

bool CommList::noAdvertise() const {
  ASSERT_INTERNED_ONCE();
  return (notes() & noAdvertiseNote) != 0;
}

bool CommList::noExportSubconfed() const {
  ASSERT_INTERNED_ONCE();
  return (notes() & noExportSubconfedNote) != 0;
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

// Where no member has a name, both texts are the same, and so is the answer.
bool CommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  const auto numbers = [this](auto& text) { appendCommunities(text, members()); };
  const auto names = [this](auto& text) { appendNamedCommunities(text, members()); };
  return anyTextMatches(*regex, numbers) ||
         (anyCommunityHasName(members()) && anyTextMatches(*regex, names));
}

void CommList::flagsIs() {
  const auto noteOf = [this](BgpCommunityValue community, U8 note) {
    return static_cast<unsigned>(comm(static_cast<U32>(community)) ? note : 0);
  };
  notesIs(static_cast<U8>(noteOf(communityNoExport, noExportNote) |
                          noteOf(communityNoAdvertise, noAdvertiseNote) |
                          noteOf(communityNoExportSubconfed, noExportSubconfedNote)));
}

}  // namespace Routing::Bgp
