// Texts of standard communities: numbers, well-known names, and lists of both.
//
// Private to the library. Functions for lists reserve the room for all communities in one request
// and then write without checking the room again. Any thread may call them.
#ifndef OVBGP_VALUE_PRIVATE_COMMUNITYTEXT_H
#define OVBGP_VALUE_PRIVATE_COMMUNITYTEXT_H

#include <span>
#include <string_view>

#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// The octets that writing one community may touch: two numbers and the colon, or a name. A number
// is stored with a few octets more than its digits, hence decimalRoomU16 for the last one.
inline constexpr std::size_t communityTextMax =
    OvFmt::decimalDigitsMaxU16 + 1 + OvFmt::decimalRoomU16;

// Writes "AS:local" in decimal at `at` and returns the end of the text. Requires: room for
// communityTextMax octets.
inline char* writeCommunity(char* at, U32 community) {
  at = OvFmt::writeDecimal(at, static_cast<U16>(community >> 16));
  *at++ = ':';
  return OvFmt::writeDecimal(at, static_cast<U16>(community));
}

// The well-known name; empty if there is none or its feature is off. The text is a literal.
std::string_view wellKnownCommunityName(U32 community);

// Whether any of `comms` has a well-known name.
bool anyCommunityHasName(std::span<const U32> comms);

// Appends all communities as numbers, with one blank between two of them.
void appendCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms);
// Appends all communities, those with a well-known name by that name.
void appendNamedCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms);
// The text of appendNamedCommunities as a string. Throws std::bad_alloc.
Kiv::String namedCommunitiesText(std::span<const U32> comms);

}  // namespace Routing::Bgp

#endif
