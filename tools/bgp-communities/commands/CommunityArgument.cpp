#include "tools/bgp-communities/commands/CommunityArgument.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

#include "OvBgp/OvBgpCommunityList.h"
#include "Ovnet/Ip6Addr.h"
#include "tools/bgp-communities/bgp/ReadNumber.h"

namespace CommTool {

using Routing::Bgp::ExtCommContent;
using Routing::Bgp::ExtCommIp6Content;

namespace {

// Octets of two hexadecimal digits each; the number of digits must be even.
std::optional<std::vector<U8>> readOctets(std::string_view digits) {
  std::vector<U8> octets;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    const auto octet = readNumber<U8>(digits.substr(i, 2), 16);
    if (!octet) return std::nullopt;
    octets.push_back(*octet);
  }
  return octets;
}

// 20 octets as on the wire (RFC 5701): type, subtype, address, local administrator.
std::optional<CommunityArgument> readIp6(std::string_view digits) {
  const auto octets = readOctets(digits);
  if (!octets) return std::nullopt;
  std::array<U8, 16> address;
  std::copy_n(octets->begin() + 2, address.size(), address.begin());
  return ExtCommIp6Content((*octets)[0], (*octets)[1], Ovnet::Ip6Addr(address),
                           static_cast<U16>((*octets)[18] << 8 | (*octets)[19]));
}

// The number of digits decides the kind. Large communities have no hexadecimal form.
std::optional<CommunityArgument> readHex(std::string_view digits) {
  switch (digits.size()) {
    case 8:
      if (const auto value = readNumber<U32>(digits, 16)) return StandardCommunity{*value};
      return std::nullopt;
    case 16:
      if (const auto value = readNumber<U64>(digits, 16)) return ExtCommContent(*value);
      return std::nullopt;
    case 40:
      return readIp6(digits);
    default:
      return std::nullopt;
  }
}

// Decimal numbers with colons: two for a standard community, three for a large one.
std::optional<CommunityArgument> readParts(std::string_view text) {
  const std::size_t first = text.find(':');
  const std::size_t last = text.rfind(':');
  if (first == std::string_view::npos) return std::nullopt;
  // One colon: 16 bits each. The values beyond have no standard community.
  if (first == last) {
    const auto as = readNumber<U16>(text.substr(0, first));
    const auto local = readNumber<U16>(text.substr(first + 1));
    if (!as || !local) return std::nullopt;
    return StandardCommunity{U32{*as} << 16 | *local};
  }
  // With more than two colons, the middle part is no number.
  const auto admin = readNumber<U32>(text.substr(0, first));
  const auto data1 = readNumber<U32>(text.substr(first + 1, last - first - 1));
  const auto data2 = readNumber<U32>(text.substr(last + 1));
  if (!admin || !data1 || !data2) return std::nullopt;
  return Acl::CommunityValue(*admin, *data1, *data2);
}

// The IANA registry of well-known communities (RFC 1997, RFC 3765, RFC 7611, RFC 7999, RFC 8326,
// RFC 9494). Policies use other names for some of them.
struct RegisteredName {
  std::string_view name;
  U32 value;
};
constexpr RegisteredName registeredNames[] = {
    {"graceful-shutdown", 0xFFFF0000},
    {"accept-own", 0xFFFF0001},
    {"llgr-stale", 0xFFFF0006},
    {"no-llgr", 0xFFFF0007},
    {"blackhole", 0xFFFF029A},
    {"no-export", 0xFFFFFF01},
    {"no-advertise", 0xFFFFFF02},
    {"no-export-subconfed", 0xFFFFFF03},
    {"nopeer", 0xFFFFFF04},
    {"internet", 0},
};

// Lower case, with - for _.
std::string normalized(std::string_view name) {
  std::string text(name);
  std::ranges::transform(text, text.begin(), [](unsigned char c) {
    return c == '_' ? '-' : static_cast<char>(std::tolower(c));
  });
  return text;
}

// The names that policies use are accepted as well, because the tool prints them.
std::optional<CommunityArgument> readName(std::string_view text) {
  const std::string name = normalized(text);
  for (const RegisteredName& row : registeredNames) {
    const std::string known = Routing::Bgp::CommList::wellKnownName(row.value);
    if (name == row.name || (!known.empty() && name == normalized(known))) {
      return StandardCommunity{row.value};
    }
  }
  return std::nullopt;
}

}  // namespace

// The forms exclude each other: names have letters and no colon, hexadecimal begins with 0x.
std::optional<CommunityArgument> readCommunity(std::string_view text) {
  if (const auto named = readName(text)) return named;
  if (text.starts_with("0x") || text.starts_with("0X")) return readHex(text.substr(2));
  return readParts(text);
}

}  // namespace CommTool
