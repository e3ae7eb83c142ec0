// Destinations as BGP writes them (RFC 4271, section 4.3; RFC 7911).
#ifndef TOOLS_BGP_COMMUNITIES_NLRI_H
#define TOOLS_BGP_COMMUNITIES_NLRI_H

#include <vector>

#include "tools/bgp-communities/Route.h"

namespace CommTool {

// What the prefixes of one block are.
struct NlriKind {
  Family family = Family::ipv4;
  bool multicast = false;
  bool addPath = false;  // four octets of path identifier before each prefix
};

// The kind of an address family, without path identifiers, if it is one that
// the tool decodes: IPv4 and IPv6, unicast and multicast.
std::optional<NlriKind> nlriKind(U16 afi, U8 safi);

// Reads an address of `family`.
Address readAddress(OctetReader& reader, Family family);

// Reads a length in bits and just enough octets for it.  Throws Malformed for a
// length that the family does not have.
Prefix readPrefix(OctetReader& reader, Family family, bool multicast);

// Appends all that `reader` still holds to `to`; throws Malformed at the first
// that is broken.
void readNlri(OctetReader reader, NlriKind kind, std::vector<Nlri>& to);

// Makes a prefix of an address given in full, clearing the bits past `length`.
Prefix prefixOf(const Address& address, U8 length, bool multicast);

}  // namespace CommTool

#endif
