#include "OvBgp/Value/Private/LargeCommunityText.h"

#include "OvBgp/Value/Private/WrittenText.h"

namespace Routing::Bgp {
namespace {

using Acl::CommunityValue;

// Three numbers, two colons, and a blank before the next one: or, after the last
// one, the octet that a number may touch beyond its end.
constexpr std::size_t entryMax = 3 * OvFmt::decimalDigitsMaxU32 + 3;

// Room for the text of `comms`. A few get the most that they can need; longer
// lists are measured, so that one that fits the buffer stays in it.
std::size_t textRoom(std::span<const CommunityValue> comms) noexcept {
  constexpr std::size_t fewComms = 3;
  if (comms.size() <= fewComms) return comms.size() * entryMax;
  std::size_t room = sizeof(U32) - 1;  // a last number of one digit is stored as four octets
  for (const CommunityValue& c : comms) {
    room += OvFmt::decimalDigits(c.globalAdmin()) + OvFmt::decimalDigits(c.localData1()) +
            OvFmt::decimalDigits(c.localData2()) + 3;
  }
  return room;
}

char* writeCommunity(char* at, const CommunityValue& community) {
  at = OvFmt::writeDecimal(at, community.globalAdmin());
  *at++ = ':';
  at = OvFmt::writeDecimal(at, community.localData1());
  *at++ = ':';
  return OvFmt::writeDecimal(at, community.localData2());
}

}  // namespace

void appendLargeCommunities(OvFmt::DynamicBufferInterface& to,
                            std::span<const CommunityValue> comms) {
  to.advanceTo(writeBlankSeparated(to.reserve(textRoom(comms)), comms, writeCommunity));
}

Kiv::String largeCommunitiesText(std::span<const CommunityValue> comms) {
  return blankSeparated<entryMax>(comms, writeCommunity);
}

}  // namespace Routing::Bgp
