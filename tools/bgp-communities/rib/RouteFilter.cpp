#include "tools/bgp-communities/rib/RouteFilter.h"

#include <arpa/inet.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "tools/bgp-communities/bgp/AddressText.h"
#include "tools/bgp-communities/bgp/Nlri.h"
#include "tools/bgp-communities/bgp/ReadNumber.h"

namespace CommTool {

namespace {

// A colon decides the family. inet_pton() accepts no octal and no abbreviated IPv4 addresses.
std::optional<Address> readAddressText(const std::string& text) {
  Address address;
  address.family = text.find(':') == std::string::npos ? Family::ipv4 : Family::ipv6;
  const int family = address.family == Family::ipv4 ? AF_INET : AF_INET6;
  if (::inet_pton(family, text.c_str(), address.octets.data()) != 1) return std::nullopt;
  return address;
}

// Whether the first `bits` bits are equal.
bool startAlike(const Address& one, const Address& other, std::size_t bits) {
  const std::size_t whole = bits / 8;
  if (!std::equal(one.octets.begin(), one.octets.begin() + std::ptrdiff_t(whole),
                  other.octets.begin())) {
    return false;
  }
  // The remaining bits are in the upper part of the next octet.
  const unsigned mask = 0xFF00U >> bits % 8 & 0xFF;
  return mask == 0 || ((one.octets[whole] ^ other.octets[whole]) & mask) == 0;
}

// A parsed prefix, whose address may have host bits set.
struct PrefixParts {
  Address address;
  U8 length;
};

// Splits the text at the slash. Nothing if one part is invalid or the length exceeds the address.
std::optional<PrefixParts> readPrefixParts(std::string_view text) {
  const std::size_t slash = text.find('/');
  const auto address = readAddressText(std::string(text.substr(0, slash)));
  if (!address) return std::nullopt;
  const std::size_t bits = octetsOf(address->family) * 8;
  std::optional<U8> length = static_cast<U8>(bits);
  if (slash != std::string_view::npos) length = readNumber<U8>(text.substr(slash + 1));
  if (!length || *length > bits) return std::nullopt;
  return PrefixParts{*address, *length};
}

}  // namespace

// Host bits are refused and not cleared, because they are more likely a typing error.
std::optional<Prefix> readPrefixText(std::string_view text) {
  const auto parts = readPrefixParts(text);
  if (!parts) return std::nullopt;
  const Prefix prefix = prefixOf(parts->address, parts->length, false);
  if (prefix.network != parts->address) return std::nullopt;
  return prefix;
}

// A prefix whose parts are valid can only be refused for its host bits.
std::string prefixTextProblem(const std::string& text) {
  const auto parts = readPrefixParts(text);
  if (!parts) return text + " is not a prefix such as 192.0.2.0/24 or 2001:db8::/32";
  const AddressText meant(prefixOf(parts->address, parts->length, false));
  return text + ": host bits are set beyond /" + std::to_string(parts->length) + " (" +
         std::string(meant.view()) + "?)";
}

std::optional<U32> readAsText(std::string_view text) {
  const std::size_t period = text.find('.');
  if (period == std::string_view::npos) return readNumber<U32>(text);
  const auto high = readNumber<U16>(text.substr(0, period));
  const auto low = readNumber<U16>(text.substr(period + 1));
  if (!high || !low) return std::nullopt;
  return U32{*high} << 16 | *low;
}

// A more specific prefix is at least as long and begins with the same bits.
bool isWithin(const Prefix& inner, const Prefix& outer) {
  return inner.network.family == outer.network.family && inner.length >= outer.length &&
         startAlike(inner.network, outer.network, outer.length);
}

// Without a prefix criterion, the common case, nothing is copied.
std::span<const Nlri> RouteFilter::wantedOf(const RouteBatch& batch,
                                            std::vector<Nlri>& room) const {
  if (!within) return batch.routes;
  room.clear();
  std::ranges::copy_if(batch.routes, std::back_inserter(room),
                       [this](const Nlri& nlri) { return isWithin(nlri.prefix, *within); });
  return room;
}

}  // namespace CommTool
