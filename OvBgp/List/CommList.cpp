#include "OvBgp/List/CommList.h"

#include "OvBgp/List/Private/ValueListImpl.h"
#include "OvBgp/Value/PacketTypes.h"
#include "OvBgp/Value/Private/CommunityText.h"

// Stops the process if the list was never interned: its notes are not computed before.
#define ASSERT_INTERNED_ONCE()                                                 \
  KIV_ASSERT(dedupState() != Dorn::dedupHandleStateNeverDeduped(),             \
             "__null == ( this ) || "                                          \
             "( this )->dedupState() != Dorn::dedupHandleStateNeverDeduped()", \
             "OvBgp/OvBgpCommunityList")

namespace Routing::Bgp {
namespace {

// The bits of ValueList::notes(): which well-known communities are members.
constexpr U8 noExportNote = 1;
constexpr U8 noAdvertiseNote = 2;
constexpr U8 noExportSubconfedNote = 4;

}  // namespace

KIV_OBJECT_DEFINE(CommList)

static_assert(sizeof(void*) != 8 || sizeof(CommList) == 32,
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

// The text is written on the stack and copied once, because its length is not known before.
Kiv::String CommList::getStringValue(U32 community) {
  OvFmt::StackBackedBuffer<communityTextMax> text;
  text.advanceTo(writeCommunity(text.reserve(communityTextMax), community));
  return text.str();
}

void CommList::appendText(OvFmt::DynamicBufferInterface& to) const {
  appendNamedCommunities(to, members());
}

Kiv::String CommList::textOf(std::span<const U32> comms) { return namedCommunitiesText(comms); }

// The text of numbers is tried first because it needs no lookup of names. If no member has a
// name, both texts are equal, so the second match is skipped.
bool CommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  const auto numbers = [this](auto& text) { appendCommunities(text, members()); };
  const auto names = [this](auto& text) { appendNamedCommunities(text, members()); };
  return anyTextMatches(*regex, numbers) ||
         (anyCommunityHasName(members()) && anyTextMatches(*regex, names));
}

// The members ascend, and the three communities are among the greatest values (0xFFFFFFxx).
// The loop runs from the end and stops at the first smaller member, which in most lists is
// the last member.
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
