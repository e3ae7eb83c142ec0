#include "OvBgp/Value/Private/LargeCommunityText.h"

#include "OvBgp/Value/Private/WrittenText.h"

namespace Routing::Bgp {
namespace {

using Acl::CommunityValue;

// The octets of one community: three numbers, two colons, and one octet more. That octet is the
// blank before the next community. After the last community it is the octet that writing a number
// may touch beyond its digits.
constexpr std::size_t entryMax = 3 * OvFmt::decimalDigitsMaxU32 + 3;

// The octets to reserve for the text of `comms`. A short list reserves the greatest possible size.
// A longer list is measured, because the greatest size would move many texts to the heap that fit
// the stack buffer.
std::size_t textRoom(std::span<const CommunityValue> comms) noexcept {
  constexpr std::size_t fewComms = 3;
  if (comms.size() <= fewComms) return comms.size() * entryMax;
  std::size_t room = sizeof(U32) - 1;  // the last number, even of one digit, is stored as 4 octets
  for (const CommunityValue& c : comms) {
    room += OvFmt::decimalDigits(c.globalAdmin()) + OvFmt::decimalDigits(c.localData1()) +
            OvFmt::decimalDigits(c.localData2()) + 3;
  }
  return room;
}

// Writes "global:local1:local2" in decimal at `at` and returns the end of the text.
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
