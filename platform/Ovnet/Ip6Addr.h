// IPv6 addresses.
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

// An address: 16 octets in network order, a plain value.  Ordered and equal by
// its octets, which is the order of the 128-bit numbers.
class Ip6Addr {
 public:
  static constexpr std::size_t size = 16;
  // Room that the longest text takes: eight groups of four digits, seven colons.
  static constexpr std::size_t textSizeMax = 39;
  using Octets = std::array<U8, size>;

  constexpr Ip6Addr() = default;  // ::
  constexpr explicit Ip6Addr(const Octets& octets) : octets_(octets) {}

  // Reads any form of RFC 4291, section 2.2: eight groups of one to four digits,
  // "::" once for one or more groups of zero, the last two groups as an IPv4
  // address.  Nothing may stand around it: no blanks, prefix length or zone.
  // Raises Kiv::RangeException otherwise.
  OV_EXPORT explicit Ip6Addr(std::string_view text);

  constexpr const Octets& octets() const { return octets_; }
  constexpr U16 group(std::size_t index) const {
    return static_cast<U16>(octets_[2 * index] << 8 | octets_[2 * index + 1]);
  }
  // Whether it stands for an IPv4 address, ::ffff:0:0/96.
  constexpr bool isIp4Mapped() const {
    return std::all_of(octets_.begin(), octets_.begin() + 10, [](U8 o) { return o == 0; }) &&
           group(5) == 0xffff;
  }

  friend constexpr bool operator==(const Ip6Addr&, const Ip6Addr&) = default;
  friend constexpr std::strong_ordering operator<=>(const Ip6Addr&, const Ip6Addr&) = default;

  // The text of RFC 5952: lower case, no zeros in front, the longest run of two
  // or more groups of zero (the first of several) as "::".  Of the addresses that
  // hold an IPv4 address, only mapped ones are written as such.
  OV_EXPORT void printToBuffer(OvFmt::DynamicBufferInterface& buffer) const;
  OV_EXPORT Kiv::String stringValue() const;

 private:
  Octets octets_{};
};

OV_EXPORT Kiv::String valueToStrep(const Ip6Addr& addr);
OV_EXPORT std::ostream& operator<<(std::ostream& out, const Ip6Addr& addr);

}  // namespace Ovnet

template <>
struct std::hash<Ovnet::Ip6Addr> {
  std::size_t operator()(const Ovnet::Ip6Addr& addr) const noexcept {
    const auto& octets = addr.octets();
    return std::hash<std::string_view>{}(
        {reinterpret_cast<const char*>(octets.data()), octets.size()});
  }
};

#endif
