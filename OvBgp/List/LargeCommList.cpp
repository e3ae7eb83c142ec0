#include "OvBgp/List/LargeCommList.h"

#include <bit>

#include "OvBgp/List/Private/ValueListImpl.h"
#include "OvBgp/Value/LargeCommunityFormatter.h"
#include "OvBgp/Value/Private/LargeCommunityText.h"

// Constant-initialized, because lists may be built before the constructors of static objects
// have run.
template <>
Kiv::Type& KivStash::arrayType<Acl::CommunityValue>() noexcept {
  static constinit Kiv::Type record{"CommunityValue[]"};
  return record;
}

namespace Routing::Bgp {

// ValueListImpl.h reads members as plain words, in the order of the wire.
static_assert(std::bit_cast<std::array<U32, 3>>(Acl::CommunityValue(1, 2, 3)) ==
                  std::array<U32, 3>{1, 2, 3},
              "the words of a community are in memory as they are on the wire");

KIV_OBJECT_DEFINE(LargeCommList)

template class ValueList<LargeCommListFamily>;

LargeCommList::Ptr largeCommListFactory() { return Dorn::notifyingObject<LargeCommList>(); }

Kiv::String LargeCommList::getStringValue(const Acl::CommunityValue& community) {
  return displayString(community, false);
}

Kiv::String LargeCommList::displayString(const Acl::CommunityValue& community, bool asdot) {
  // The longest text has 33 characters: 5 + 1 + 5 with asdot, and twice 1 + 10.
  OvFmt::StackBackedBuffer<64> text;
  LargeCommunityFormatter::format(text, community, asdot);
  return text.str();
}

Kiv::String LargeCommList::textOf(std::span<const Acl::CommunityValue> comms) {
  return largeCommunitiesText(comms);
}

void LargeCommList::appendText(OvFmt::DynamicBufferInterface& to) const {
  appendLargeCommunities(to, members());
}

bool LargeCommList::matchCommunitiesRegex(const RouteMap::PosixRegex* regex) const {
  return anyTextMatches(*regex, [this](auto& text) { appendText(text); });
}

}  // namespace Routing::Bgp
