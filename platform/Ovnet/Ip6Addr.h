// IPv6 addresses, and their text forms (RFC 4291, RFC 5952).
#ifndef OVNET_IP6ADDR_H
#define OVNET_IP6ADDR_H

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Ovnet {

// An IPv6 address: 16 octets in network byte order. A plain value. Compared octet by octet, which
// is the order of the addresses as 128-bit numbers.
class Ip6Addr {
 public:
  // Octets of an address.
  static constexpr std::size_t size = 16;
  // Octets of the longest text: eight groups of four digits, and seven colons.
  static constexpr std::size_t textSizeMax = 39;
  // The octets in network byte order.
  using Octets = std::array<U8, size>;

  // The unspecified address, "::".
  constexpr Ip6Addr() = default;
  // The address with these octets.
  constexpr explicit Ip6Addr(const Octets& octets) : octets_(octets) {}

  // Parses any text form of RFC 4291, section 2.2: eight groups of one to four hexadecimal digits,
  // "::" at most once for one or more groups of zeros, and the last two groups optionally as an
  // IPv4 address. The whole text must be the address: blanks, a prefix length or a zone are errors.
  // Raises Kiv::RangeException for any other text.
  OV_EXPORT explicit Ip6Addr(std::string_view text);

  // The octets in network byte order.
  constexpr const Octets& octets() const { return octets_; }
  // The group at `index`, 0 to 7 from the left, in host byte order.
  constexpr U16 group(std::size_t index) const {
    return static_cast<U16>(octets_[2 * index] << 8 | octets_[2 * index + 1]);
  }
  // Whether the address is an IPv4-mapped one, in ::ffff:0:0/96 (RFC 4291, section 2.5.5.2).
  constexpr bool isIp4Mapped() const {
    return std::all_of(octets_.begin(), octets_.begin() + 10, [](U8 o) { return o == 0; }) &&
           group(5) == 0xffff;
  }

  // Equal octets.
  friend constexpr bool operator==(const Ip6Addr&, const Ip6Addr&) = default;
  // The order of the 128-bit numbers.
  friend constexpr std::strong_ordering operator<=>(const Ip6Addr&, const Ip6Addr&) = default;

  // Appends the canonical text of RFC 5952: lower case, no leading zeros, and "::" for the longest
  // run of two or more groups of zeros, the first run if several are equally long. The last 32 bits
  // are written as an IPv4 address only for IPv4-mapped addresses. Raises std::bad_alloc if the
  // buffer must grow.
  OV_EXPORT void printToBuffer(OvFmt::DynamicBufferInterface& buffer) const;
  // The canonical text, as a string.
  OV_EXPORT Kiv::String stringValue() const;

 private:
  Octets octets_{};
};

// The canonical text of RFC 5952, under the name by which values of all types are printed.
OV_EXPORT Kiv::String valueToStrep(const Ip6Addr& addr);
// Writes the canonical text; the base and fill of the stream do not matter, its width applies.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const Ip6Addr& addr);

}  // namespace Ovnet

// Hashes the octets, for standard containers. Not keyed: do not use it for tables whose keys a
// remote sender can choose.
template <>
struct std::hash<Ovnet::Ip6Addr> {
  // The hash of all 16 octets.
  std::size_t operator()(const Ovnet::Ip6Addr& addr) const noexcept {
    const auto& octets = addr.octets();
    return std::hash<std::string_view>{}(
        {reinterpret_cast<const char*>(octets.data()), octets.size()});
  }
};

#endif
