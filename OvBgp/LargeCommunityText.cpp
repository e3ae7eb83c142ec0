#include "OvBgp/LargeCommunityText.h"

#include <array>
#include <bit>

namespace Routing::Bgp {
namespace {

using Acl::CommunityValue;

// Three numbers, two colons, and a blank before the next one: or, after the last
// one, the octet that a number may touch beyond its end.
constexpr std::size_t entryMax = 3 * OvFmt::decimalDigitsMaxU32 + 3;

// From the number of bits, which leaves two answers, and a comparison; without a
// branch, as the numbers of a list differ in length.
std::size_t digits(U32 value) noexcept {
  static constexpr std::array<U32, 10> powersOfTen{
      1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
  const auto lower = static_cast<U32>(std::bit_width(value | 1)) * 1233 >> 12;
  return lower + ((value | 1) >= powersOfTen[lower]);
}

// Room for the text of `comms`. A few get the most that they can need; longer
// lists are measured, so that one that fits the buffer stays in it.
std::size_t textRoom(std::span<const CommunityValue> comms) noexcept {
  constexpr std::size_t fewComms = 3;
  if (comms.size() <= fewComms) return comms.size() * entryMax;
  std::size_t room = sizeof(U32) - 1;  // a last number of one digit is stored as four octets
  for (const CommunityValue& c : comms) {
    room += digits(c.globalAdmin()) + digits(c.localData1()) + digits(c.localData2()) + 3;
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
  char* at = to.reserve(textRoom(comms));
  char* const begin = at;
  for (const CommunityValue& community : comms) {
    if (at != begin) *at++ = ' ';
    at = writeCommunity(at, community);
  }
  to.advanceTo(at);
}

}  // namespace Routing::Bgp
