// Prefixes of route targets, as keys of a bit-wise prefix tree.
#ifndef OVBGP_VALUE_ROUTETARGETPREFIX_H
#define OVBGP_VALUE_ROUTETARGETPREFIX_H

#include <compare>
#include <cstddef>
#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Hash.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "Routing/Bgp/RouteTarget.h"

namespace Routing::Bgp {

// The first `length` bits, 0 to 64, of a route target, the most significant bit first. BGP peers
// advertise in this form which route targets they want (RFC 4684 section 4).
//
// The bits after the prefix may be set until bitlenIs is called, which clears them; equality and
// order take them into account. The order is by prefix, then by length. A plain value; owner thread
// only.
//
// The constructors refuse a length above 64. bitlenIs throws on it, too, but keeps it; all
// operations have a defined result for such a length.
class RouteTargetPrefix {
 public:
  // The greatest length: the bits of a route target.
  static constexpr U8 bitlenMax = 64;

  // The prefix of length 0, to which all route targets belong.
  constexpr RouteTargetPrefix() = default;
  // The first `length` bits of `prefix`. Throws Kiv::RangeException if `length` is above 64. The
  // bits of `prefix` after them are kept.
  RouteTargetPrefix(U64 prefix, U8 length) : prefix_(prefix), length_(length) { checkLength(); }
  // Reads the value form, see valueToStrep. Throws Kiv::RangeException on any other text and on a
  // length above 64.
  OV_EXPORT explicit RouteTargetPrefix(const Kiv::String& valueForm);

  // The prefix as the upper bits of a number in host byte order.
  constexpr U64 prefixBits() const { return prefix_; }
  // The length in bits.
  constexpr U8 bitlen() const { return length_; }
  // Stores the length and clears the bits after the prefix. A length above 64 throws
  // Kiv::RangeException, unless it is the length already stored; it is stored all the same, and no
  // bit is cleared. A length above 255 stops the process.
  OV_EXPORT void bitlenIs(std::size_t bitlen);

  // A number in which the bits of the prefix are 1 and all others 0.
  constexpr U64 mask() const {
    if (length_ >= bitlenMax) return ~U64{0};
    return length_ == 0 ? 0 : ~U64{0} << (bitlenMax - length_);
  }
  // Bit `i`, where 0 is the most significant bit; false for `i` above 63. The length plays no part.
  constexpr bool extractBit(U32 i) const {
    return i < bitlenMax && (prefix_ >> (bitlenMax - 1 - i) & 1) != 0;
  }
  // The number of leading bits that both prefixes have in common, at most the shorter length.
  OV_EXPORT U8 commonPrefixLen(const RouteTargetPrefix& other) const;

  // The hash of the 64 bits, which differs in each process (Kiv/Hash.h). The length plays no part.
  U32 hash(U32 seed) const { return Kiv::hashSingleAttr(seed, prefix_); }

  // Compares all 64 bits and the length.
  friend constexpr bool operator==(const RouteTargetPrefix&, const RouteTargetPrefix&) = default;
  // Orders by all 64 bits, then by the length.
  friend constexpr std::strong_ordering operator<=>(const RouteTargetPrefix&,
                                                    const RouteTargetPrefix&) = default;

  // The text for people: "0/0" for length 0, else the text of the route target, "/" and the length.
  // `asdot` writes AS numbers above 65535 as "high.low" (RFC 5396).
  OV_EXPORT Kiv::String toStrep(bool asdot) const;

 private:
  OV_EXPORT void checkLength() const;

  U64 prefix_ = 0;
  U8 length_ = 0;
};

// The value form, which tells all prefixes apart:
//   Value('Routing::Bgp::RouteTargetPrefix', ** {'prefix': 0x..., 'length': ...})
OV_EXPORT Kiv::String valueToStrep(const RouteTargetPrefix& prefix);
// Reads the value form and moves `it` behind it. Throws Kiv::RangeException, and changes nothing,
// on any other text and on a length above 64.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RouteTargetPrefix* target);
// Writes the text for people without asdot. The stream's format neither matters nor changes.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const RouteTargetPrefix& prefix);

}  // namespace Routing::Bgp

#endif
