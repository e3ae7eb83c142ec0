// Text of standard communities: numbers, well-known names, and lists of them.
//
// Private to the library.  Lists reserve the room for all their communities in
// one request and then write without looking at the room again.
#ifndef OVBGP_VALUE_PRIVATE_COMMUNITYTEXT_H
#define OVBGP_VALUE_PRIVATE_COMMUNITYTEXT_H

#include <span>
#include <string_view>

#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Octets that one community may touch: two numbers and the colon, or a name.
inline constexpr std::size_t communityTextMax =
    OvFmt::decimalDigitsMaxU16 + 1 + OvFmt::decimalRoomU16;

// Writes "AS:local" at `at`, where there is room for communityTextMax octets;
// returns the end of the text.
inline char* writeCommunity(char* at, U32 community) {
  at = OvFmt::writeDecimal(at, static_cast<U16>(community >> 16));
  *at++ = ':';
  return OvFmt::writeDecimal(at, static_cast<U16>(community));
}

// The well-known name, or empty.
std::string_view wellKnownCommunityName(U32 community);

// Whether one of them has a well-known name.
bool anyCommunityHasName(std::span<const U32> comms);

// One blank between communities, none before or after.
void appendCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms);
// The same with names for those that have one.
void appendNamedCommunities(OvFmt::DynamicBufferInterface& to, std::span<const U32> comms);
// The latter as a string.
Kiv::String namedCommunitiesText(std::span<const U32> comms);

}  // namespace Routing::Bgp

#endif
