// Route targets as keys of a bit-wise prefix tree.
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

// The first `length` bits, 0 to 64, of a route target, most significant first
// (RFC 4684 advertises memberships so). A plain value, ordered by prefix and then
// by length.
//
// Bits below the length are zero once bitlenIs has been called; until then they
// are as given. A length above 64 is refused, but one that bitlenIs refused stays
// until another is set; every operation has a defined result with it.
class RouteTargetPrefix {
 public:
  static constexpr U8 bitlenMax = 64;

  constexpr RouteTargetPrefix() = default;
  // Throws Kiv::RangeException if `length` is above 64.
  RouteTargetPrefix(U64 prefix, U8 length) : prefix_(prefix), length_(length) { checkLength(); }
  // Reads the value form (valueToStrep); throws Kiv::RangeException on any other
  // text, and on a length above 64.
  OV_EXPORT explicit RouteTargetPrefix(const Kiv::String& valueForm);

  constexpr U64 prefixBits() const { return prefix_; }
  constexpr U8 bitlen() const { return length_; }
  // Stores the length and clears the bits below it. Throws Kiv::RangeException,
  // with the length stored and no bit cleared, if it is above 64. Requires: below
  // 256.
  OV_EXPORT void bitlenIs(std::size_t bitlen);

  // The bits that count, as ones.
  constexpr U64 mask() const {
    if (length_ >= bitlenMax) return ~U64{0};
    return length_ == 0 ? 0 : ~U64{0} << (bitlenMax - length_);
  }
  // Bit `i`, where 0 is the most significant one; false from 64 on.
  constexpr bool extractBit(U32 i) const {
    return i < bitlenMax && (prefix_ >> (bitlenMax - 1 - i) & 1) != 0;
  }
  // The leading bits in which both agree, at most the shorter length.
  OV_EXPORT U8 commonPrefixLen(const RouteTargetPrefix& other) const;

  // The length plays no part.
  U32 hash(U32 seed) const { return Kiv::hashSingleAttr(seed, prefix_); }

  friend constexpr bool operator==(const RouteTargetPrefix&, const RouteTargetPrefix&) = default;
  friend constexpr std::strong_ordering operator<=>(const RouteTargetPrefix&,
                                                    const RouteTargetPrefix&) = default;

  // "0/0" for length 0, else the route target's text, "/" and the length.
  OV_EXPORT Kiv::String toStrep(bool asdot) const;

 private:
  OV_EXPORT void checkLength() const;

  U64 prefix_ = 0;
  U8 length_ = 0;
};

// Value('Routing::Bgp::RouteTargetPrefix', ** {'prefix': 0x..., 'length': ...})
OV_EXPORT Kiv::String valueToStrep(const RouteTargetPrefix& prefix);
// Reads it, and changes nothing if it throws.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RouteTargetPrefix* target);
// The text, without asdot, whatever the stream's format.
OV_EXPORT std::ostream& operator<<(std::ostream& out, const RouteTargetPrefix& prefix);

}  // namespace Routing::Bgp

#endif
