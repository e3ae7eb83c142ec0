#include "OvBgp/List/CommList.h"

#include "OvBgp/List/Private/ValueListImpl.h"
#include "OvBgp/Value/PacketTypes.h"
#include "OvBgp/Value/Private/CommunityText.h"

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
              "a list of n communities takes 20 + 4 n octets, but at least 32, on 64-bit builds");

template class ValueList<CommListFamily>;

CommList::Ptr commListFactory() { return Dorn::notifyingObject<CommList>(); }

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

Kiv::String CommList::textOf(std::span<const U32> comms) { return namedCommunitiesText(comms); }

// Where no member has a name, both texts are the same, and so is the answer.
bool CommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  const auto numbers = [this](auto& text) { appendCommunities(text, members()); };
  const auto names = [this](auto& text) { appendNamedCommunities(text, members()); };
  return anyTextMatches(*regex, numbers) ||
         (anyCommunityHasName(members()) && anyTextMatches(*regex, names));
}

// All three are above what most lists end with.
void CommList::flagsIs() {
  unsigned notes = 0;
  const auto all = members();
  for (std::size_t left = all.size(); left > 0; --left) {
    const U32 community = all[left - 1];
    if (community < static_cast<U32>(communityNoExport)) break;
    if (community == static_cast<U32>(communityNoExport)) notes |= noExportNote;
    if (community == static_cast<U32>(communityNoAdvertise)) notes |= noAdvertiseNote;
    if (community == static_cast<U32>(communityNoExportSubconfed)) notes |= noExportSubconfedNote;
  }
  notesIs(static_cast<U8>(notes));
}

}  // namespace Routing::Bgp
