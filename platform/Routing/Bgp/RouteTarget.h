// Route targets: which VPNs a route belongs to (RFC 4364 section 4.3.1).
#ifndef ROUTING_BGP_ROUTETARGET_H
#define ROUTING_BGP_ROUTETARGET_H

#include <compare>
#include <functional>
#include <iosfwd>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/Hash.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// A route target is the whole extended community that carries it: eight octets,
// type and subtype included, as one big-endian number. Any number can be held;
// isRouteTarget() tells whether it is one. A plain value.
//
// Text, for people (toStrep, operator<<, the constructor from text):
//   65000:100        two-octet AS and a local number of four octets
//   192.0.2.1:100    IPv4 address and a local number of two octets
//   70000:100        four-octet AS and a local number of two octets
//   1.4464:100       the same as asdot (RFC 5396), if asked for
//   0x0102030405060708   any number that is no route target
// A four-octet AS below 65536 is written like a two-octet one, so reading that
// text back gives the two-octet form; written as asdot, "0.100:5", it is read as
// the four-octet one.
//
// Value form, for machines (valueToStrep, sequenceToValue): 0x and 16 lower-case
// hexadecimal digits, always. It tells all numbers apart.
class RouteTarget {
 public:
  constexpr RouteTarget() = default;
  constexpr explicit RouteTarget(U64 value) : value_(value) {}
  // Reads the text, and nothing else around it; numbers in decimal, hexadecimal
  // digits in either case. Throws Kiv::RangeException on any other text.
  OV_EXPORT explicit RouteTarget(std::string_view text);

  constexpr U64 value() const { return value_; }
  // Whether type and subtype are those of one of the three forms.
  constexpr bool isRouteTarget() const {
    return (value_ >> 48 & 0xff) == subtype && value_ >> 56 <= typeFourOctetAs;
  }
  U32 hash(U32 seed = 0) const { return Kiv::hashSingleAttr(seed, value_); }

  friend constexpr bool operator==(const RouteTarget&, const RouteTarget&) = default;
  friend constexpr std::strong_ordering operator<=>(const RouteTarget&,
                                                    const RouteTarget&) = default;

  // The text. `asdot` asks for four-octet AS numbers above 65535 as high.low.
  OV_EXPORT Kiv::String toStrep(bool asdot) const;
  OV_EXPORT void appendText(OvFmt::DynamicBufferInterface& to, bool asdot) const;

 private:
  // RFC 4360 sections 3.1, 3.2 and 4; RFC 5668.
  static constexpr U64 typeTwoOctetAs = 0x00;
  static constexpr U64 typeIpv4Address = 0x01;
  static constexpr U64 typeFourOctetAs = 0x02;
  static constexpr U64 subtype = 0x02;

  static RouteTarget wide(U64 type, U64 administrator, std::string_view local);
  static RouteTarget fromText(std::string_view text);

  U64 value_ = 0;
};

// The value form.
OV_EXPORT Kiv::String valueToStrep(const RouteTarget& routeTarget);
// Moves `it` behind the value form. Throws Kiv::RangeException, and changes
// nothing, if there is none.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RouteTarget* target);
// The text, without asdot, whatever the stream's format.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const RouteTarget& routeTarget);

}  // namespace Routing::Bgp

template <>
struct std::hash<Routing::Bgp::RouteTarget> {
  std::size_t operator()(const Routing::Bgp::RouteTarget& routeTarget) const noexcept {
    return routeTarget.hash();
  }
};

#endif
