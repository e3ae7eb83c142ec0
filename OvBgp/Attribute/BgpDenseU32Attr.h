// A 32-bit word that holds several small attributes.
#ifndef OVBGP_ATTRIBUTE_BGPDENSEU32ATTR_H
#define OVBGP_ATTRIBUTE_BGPDENSEU32ATTR_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// One 32-bit word that can be read and written as 16 flags (the low half), four
// octets or two halves; number 0 is the least significant.  All views are of the
// same bits.
//
// An index out of range is refused with Kiv::RangeException and changes nothing.
// The views always exist: deleting one throws Kiv::NonDeletableAttributeException.
// Text form: "value=" and the word in decimal.  A plain value: owner thread only.
class OV_EXPORT BgpDenseU32Attr {
 public:
  BgpDenseU32Attr() = default;
  explicit BgpDenseU32Attr(U32 value) : value_(value) {}
  // Reads the text form, and nothing else; throws RangeException on any other text.
  explicit BgpDenseU32Attr(const Kiv::String& text);

  U32 value() const { return value_; }
  void valueIs(U32 value) { value_ = value; }

  bool valueBool(U8 i) const;
  void valueBoolIs(U8 i, bool b);
  [[noreturn]] void valueBoolDel(U8 i);

  U8 valueU8(U8 i) const;
  void valueU8Is(U8 i, U8 v);
  [[noreturn]] void valueU8Del(U8 i);

  U16 valueU16(U8 i) const;
  void valueU16Is(U8 i, U16 v);
  [[noreturn]] void valueU16Del(U8 i);

  friend bool operator==(const BgpDenseU32Attr&, const BgpDenseU32Attr&) = default;

 private:
  U32 value_ = 0;
};

OV_EXPORT Kiv::String valueToStrep(const BgpDenseU32Attr& attr);
// Writes the word alone, in decimal.
OV_EXPORT std::ostream& operator<<(std::ostream& os, const BgpDenseU32Attr& attr);

}  // namespace Routing::Bgp

#endif
