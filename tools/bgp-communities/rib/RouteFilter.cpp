#include "tools/bgp-communities/RouteFilter.h"

#include <arpa/inet.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "tools/bgp-communities/Nlri.h"
#include "tools/bgp-communities/ReadNumber.h"

namespace CommTool {

namespace {

std::optional<Address> readAddressText(const std::string& text) {
  Address address;
  address.family = text.find(':') == std::string::npos ? Family::ipv4 : Family::ipv6;
  const int family = address.family == Family::ipv4 ? AF_INET : AF_INET6;
  if (::inet_pton(family, text.c_str(), address.octets.data()) != 1) return std::nullopt;
  return address;
}

// Whether the first `bits` bits are the same.
bool startAlike(const Address& one, const Address& other, std::size_t bits) {
  const std::size_t whole = bits / 8;
  if (!std::equal(one.octets.begin(), one.octets.begin() + std::ptrdiff_t(whole),
                  other.octets.begin())) {
    return false;
  }
  const unsigned mask = 0xFF00U >> bits % 8 & 0xFF;
  return mask == 0 || ((one.octets[whole] ^ other.octets[whole]) & mask) == 0;
}

}  // namespace

std::optional<Prefix> readPrefixText(std::string_view text) {
  const std::size_t slash = text.find('/');
  const auto address = readAddressText(std::string(text.substr(0, slash)));
  if (!address) return std::nullopt;
  const std::size_t bits = octetsOf(address->family) * 8;
  std::optional<U8> length = static_cast<U8>(bits);
  if (slash != std::string_view::npos) length = readNumber<U8>(text.substr(slash + 1));
  if (!length || *length > bits) return std::nullopt;
  const Prefix prefix = prefixOf(*address, *length, false);
  if (prefix.network != *address) return std::nullopt;
  return prefix;
}

std::optional<U32> readAsText(std::string_view text) {
  const std::size_t period = text.find('.');
  if (period == std::string_view::npos) return readNumber<U32>(text);
  const auto high = readNumber<U16>(text.substr(0, period));
  const auto low = readNumber<U16>(text.substr(period + 1));
  if (!high || !low) return std::nullopt;
  return U32{*high} << 16 | *low;
}

bool isWithin(const Prefix& inner, const Prefix& outer) {
  return inner.network.family == outer.network.family && inner.length >= outer.length &&
         startAlike(inner.network, outer.network, outer.length);
}

std::span<const Nlri> RouteFilter::wantedOf(const RouteBatch& batch,
                                            std::vector<Nlri>& room) const {
  if (!within) return batch.routes;
  room.clear();
  std::ranges::copy_if(batch.routes, std::back_inserter(room),
                       [this](const Nlri& nlri) { return isWithin(nlri.prefix, *within); });
  return room;
}

}  // namespace CommTool
