// Decoding of addresses and prefixes (RFC 4271, section 4.3; RFC 7911).
#ifndef TOOLS_BGP_COMMUNITIES_BGP_NLRI_H
#define TOOLS_BGP_COMMUNITIES_BGP_NLRI_H

#include <vector>

#include "tools/bgp-communities/bgp/Route.h"

namespace CommTool {

// The encoding of the prefixes in one block of NLRI.
struct NlriKind {
  // The address family.
  Family family = Family::ipv4;
  // Whether the SAFI is 2 (multicast) and not 1 (unicast).
  bool multicast = false;
  // Whether a path identifier of four octets stands before each prefix (RFC 7911).
  bool addPath = false;
};

// The encoding that belongs to an AFI and SAFI, with `addPath` false. Nothing for families that the
// tool does not decode: it decodes unicast and multicast of IPv4 and IPv6.
std::optional<NlriKind> nlriKind(U16 afi, U8 safi);

// Reads a full address of `family`. Throws Malformed if the octets do not suffice.
Address readAddress(OctetReader& reader, Family family);

// Reads a prefix: a length in bits, and as many octets as hold that many bits. Throws Malformed if
// the length exceeds that of the family's addresses or the octets do not suffice.
Prefix readPrefix(OctetReader& reader, Family family, bool multicast);

// Reads prefixes until `reader` is at its end and appends them to `to`. Throws Malformed at the
// first malformed prefix; the prefixes before it are then in `to`.
void readNlri(OctetReader reader, NlriKind kind, std::vector<Nlri>& to);

// Makes a prefix of a full address: clears the bits behind `length`. Throws Malformed if `length`
// exceeds the address.
Prefix prefixOf(const Address& address, U8 length, bool multicast);

}  // namespace CommTool

#endif
