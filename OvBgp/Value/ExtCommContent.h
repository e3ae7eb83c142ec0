// The eight octets of an extended community as one number.
#ifndef OVBGP_VALUE_EXTCOMMCONTENT_H
#define OVBGP_VALUE_EXTCOMMCONTENT_H

#include <compare>
#include <iosfwd>
#include <type_traits>

#include "Dorn/DedupContentHandle.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// The content of one extended community (RFC 4360 section 2). The eight octets are read as a
// big-endian number, so that the type, octet 0, is the most significant octet. Contents are
// therefore ordered by type, then by subtype, then by the other octets.
//
// The content is the key by which a value is looked up before an object for it exists. A plain
// value in one register; owner thread only.
class ExtCommContent : public Dorn::DedupContentHandle {
 public:
  // The content 0.
  constexpr ExtCommContent() = default;
  // The eight octets as a number in host byte order.
  constexpr explicit ExtCommContent(U64 value) : value_(value) {}

  // The eight octets as a number in host byte order.
  constexpr U64 value() const { return value_; }
  // Replaces the eight octets by those of `value`, a number in host byte order.
  constexpr void valueIs(U64 value) { value_ = value; }
  // Octet 0, the type.
  constexpr U8 typeOctet() const { return static_cast<U8>(value_ >> 56); }
  // Octet 1. It is a subtype only if the type has subtypes.
  constexpr U8 subtypeOctet() const { return static_cast<U8>(value_ >> 48); }
  // Whether routes may carry the community into another autonomous system (bit 0x40 of the type is
  // clear).
  constexpr bool transitiveFlag() const { return (typeOctet() & 0x40) == 0; }
  // The six octets after type and subtype, as a number.
  constexpr U64 value6() const { return value_ & 0xffff'ffff'ffff; }
  // The seven octets after the type, as a number. For types without a subtype.
  constexpr U64 value7() const { return value_ & 0xff'ffff'ffff'ffff; }

  // Compares the numbers.
  friend constexpr bool operator==(const ExtCommContent&, const ExtCommContent&) = default;
  // Orders by the numbers.
  friend constexpr std::strong_ordering operator<=>(const ExtCommContent&,
                                                    const ExtCommContent&) = default;

 private:
  U64 value_ = 0;
};

static_assert(sizeof(ExtCommContent) == 8 && std::is_trivially_copyable_v<ExtCommContent>,
              "contents are passed in a register and stored as eight octets");

// Writes 0x and 16 lower-case hexadecimal digits. The stream's base and fill neither matter nor
// change; its width is ignored and reset to 0, as by every formatted output.
OV_EXPORT std::ostream& operator<<(std::ostream& os, const ExtCommContent& content);
// The text of a plain 64-bit integer, in decimal.
OV_EXPORT Kiv::String valueToStrep(const ExtCommContent& content);
// Reads the text of a plain 64-bit integer and moves `it` behind it. Throws Kiv::RangeException,
// and changes nothing, if there is no such number.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, ExtCommContent* target);

}  // namespace Routing::Bgp

#endif
