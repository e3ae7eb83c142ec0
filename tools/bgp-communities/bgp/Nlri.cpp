#include "tools/bgp-communities/bgp/Nlri.h"

#include <algorithm>

namespace CommTool {

// AFI 1 is IPv4 and AFI 2 is IPv6; SAFI 1 is unicast and SAFI 2 is multicast (RFC 4760, section 6).
std::optional<NlriKind> nlriKind(U16 afi, U8 safi) {
  const bool known = (afi == 1 || afi == 2) && (safi == 1 || safi == 2);
  if (!known) {
    return std::nullopt;
  }
  return NlriKind{afi == 1 ? Family::ipv4 : Family::ipv6, safi == 2, false};
}

// The address is in network byte order on the wire and in Address, so it is only copied.
Address readAddress(OctetReader& reader, Family family) {
  Address address;
  address.family = family;
  std::ranges::copy(reader.octets(octetsOf(family)), address.octets.begin());
  return address;
}

// Clearing the host bits is not only for show: RFC 4271, section 4.3, says that their value is
// irrelevant, so two encodings of one prefix must become one route.
Prefix prefixOf(const Address& address, U8 length, bool multicast) {
  const std::size_t bits = octetsOf(address.family) * 8;
  if (length > bits) {
    throw Malformed("prefix length " + std::to_string(length) + " is more than " +
                    std::to_string(bits));
  }
  Prefix prefix{address, length, multicast};
  auto& octets = prefix.network.octets;
  // The octet that the prefix ends in keeps its upper bits only; all octets behind it are cleared.
  std::size_t whole = length / 8U;
  if (length % 8U != 0) {
    octets[whole] = static_cast<U8>(octets[whole] & 0xFF00U >> length % 8U);
    ++whole;
  }
  std::fill(octets.begin() + std::ptrdiff_t(whole), octets.end(), U8(0));
  return prefix;
}

// A prefix of n bits has (n + 7) / 8 octets.
Prefix readPrefix(OctetReader& reader, Family family, bool multicast) {
  const U8 length = reader.u8();
  Address address;
  address.family = family;
  const std::size_t sent = (length + 7U) / 8U;
  if (sent <= octetsOf(family)) {  // otherwise prefixOf() throws
    std::ranges::copy(reader.octets(sent), address.octets.begin());
  }
  return prefixOf(address, length, multicast);
}

// There is no count of prefixes: they fill the block up to its end.
void readNlri(OctetReader reader, NlriKind kind, std::vector<Nlri>& to) {
  while (!reader.atEnd()) {
    Nlri nlri;
    if (kind.addPath) {
      nlri.pathId = reader.u32();
    }
    nlri.prefix = readPrefix(reader, kind.family, kind.multicast);
    to.push_back(nlri);
  }
}

}  // namespace CommTool
