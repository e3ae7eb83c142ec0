// The eight octets of an extended community, as one number.
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

// The value of one extended community (RFC 4360 section 2): its eight octets
// read as a big-endian number, so that octet 0, the type, is the most
// significant and communities sort by type, then subtype, then the rest.
//
// operator<< writes 0x and 16 lower-case hexadecimal digits, whatever the
// stream's format, and leaves that format alone; valueToStrep and
// sequenceToValue use the text of a plain 64-bit integer.  A plain value.
class ExtCommContent : public Dorn::DedupContentHandle {
 public:
  constexpr ExtCommContent() = default;
  constexpr explicit ExtCommContent(U64 value) : value_(value) {}

  constexpr U64 value() const { return value_; }
  constexpr U8 typeOctet() const { return static_cast<U8>(value_ >> 56); }
  // Only means something if the type has subtypes.
  constexpr U8 subtypeOctet() const { return static_cast<U8>(value_ >> 48); }
  // Whether the community may cross the border of an autonomous system.
  constexpr bool transitiveFlag() const { return (typeOctet() & 0x40) == 0; }
  // The octets behind the type and subtype (six of them), or behind the type alone.
  constexpr U64 value6() const { return value_ & 0xffff'ffff'ffff; }
  constexpr U64 value7() const { return value_ & 0xff'ffff'ffff'ffff; }

  friend constexpr bool operator==(const ExtCommContent&, const ExtCommContent&) = default;
  friend constexpr std::strong_ordering operator<=>(const ExtCommContent&,
                                                    const ExtCommContent&) = default;

 private:
  U64 value_ = 0;
};

static_assert(sizeof(ExtCommContent) == 8 && std::is_trivially_copyable_v<ExtCommContent>,
              "contents are passed in a register and stored as eight octets");

OV_EXPORT std::ostream& operator<<(std::ostream& os, const ExtCommContent& content);
OV_EXPORT Kiv::String valueToStrep(const ExtCommContent& content);
// Throws Kiv::RangeException, and changes nothing, if there is no 64-bit number.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, ExtCommContent* target);

}  // namespace Routing::Bgp

#endif
