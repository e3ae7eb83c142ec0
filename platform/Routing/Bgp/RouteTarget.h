// Route targets: which VPNs a route belongs to (RFC 4364, section 4.3.1).
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

// A route target, represented by the whole extended community that carries it: its eight octets,
// type and subtype included, as one 64-bit number (first octet most significant). Every number is
// representable; isRouteTarget() tells whether it is a route target. A plain value.
//
// The text form, for people (toStrep, operator<<, the constructor from text):
//   65000:100            two-octet AS number, and a local number of four octets
//   192.0.2.1:100        IPv4 address, and a local number of two octets
//   70000:100            four-octet AS number, and a local number of two octets
//   1.4464:100           the line above as asdot (RFC 5396), on request
//   0x0102030405060708   a number that is not a route target
// The text form is ambiguous in one case: a four-octet AS number below 65536 is written like a
// two-octet one, and the text is read back as the two-octet form. "0.100:5", the asdot form, is
// read as the four-octet one.
//
// The value form, for machines (valueToStrep, sequenceToValue): always 0x and 16 lower-case
// hexadecimal digits. It is unambiguous.
class RouteTarget {
 public:
  // The number 0, which is not a route target.
  constexpr RouteTarget() = default;
  // The extended community with these octets.
  constexpr explicit RouteTarget(U64 value) : value_(value) {}
  // Parses the text form. The whole text must be the route target, without blanks; numbers are
  // decimal, hexadecimal digits may be of either case. Throws Kiv::RangeException for other text.
  OV_EXPORT explicit RouteTarget(std::string_view text);

  // The eight octets as a number, the first octet most significant.
  constexpr U64 value() const { return value_; }
  // Whether type and subtype are those of one of the three forms of route targets.
  constexpr bool isRouteTarget() const {
    return (value_ >> 48 & 0xff) == subtype && value_ >> 56 <= typeFourOctetAs;
  }
  // A hash of the number, keyed per process and mixed with `seed`. Differs from process to process.
  U32 hash(U32 seed = 0) const { return Kiv::hashSingleAttr(seed, value_); }

  // Equal numbers: two forms of the same AS number are different.
  friend constexpr bool operator==(const RouteTarget&, const RouteTarget&) = default;
  // The order of the numbers, that is of the octets on the wire.
  friend constexpr std::strong_ordering operator<=>(const RouteTarget&,
                                                    const RouteTarget&) = default;

  // The text form. With `asdot`, four-octet AS numbers above 65535 are written as high.low.
  OV_EXPORT Kiv::String toStrep(bool asdot) const;
  // Appends the text form to a buffer.
  OV_EXPORT void appendText(OvFmt::DynamicBufferInterface& to, bool asdot) const;

 private:
  // Type and subtype octets: RFC 4360, sections 3.1, 3.2 and 4; RFC 5668.
  static constexpr U64 typeTwoOctetAs = 0x00;
  static constexpr U64 typeIpv4Address = 0x01;
  static constexpr U64 typeFourOctetAs = 0x02;
  static constexpr U64 subtype = 0x02;

  static RouteTarget wide(U64 type, U64 administrator, std::string_view local);
  static RouteTarget fromText(std::string_view text);

  U64 value_ = 0;
};

// Returns the value form, 18 characters.
OV_EXPORT Kiv::String valueToStrep(const RouteTarget& routeTarget);
// Parses the value form at `it`, stores it in `*target`, and moves `it` behind it; text behind it
// does not matter. Throws Kiv::RangeException if there is no value form at `it`, and has then
// changed neither.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RouteTarget* target);
// Writes the text form without asdot. The format flags and the width of the stream do not matter.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const RouteTarget& routeTarget);

}  // namespace Routing::Bgp

// For standard containers: RouteTarget::hash without a seed.
template <>
struct std::hash<Routing::Bgp::RouteTarget> {
  // Keyed per process, so the order of a hash container is different in each process.
  std::size_t operator()(const Routing::Bgp::RouteTarget& routeTarget) const noexcept {
    return routeTarget.hash();
  }
};

#endif
