// A 32-bit word that holds several small attributes.
#ifndef OVBGP_ATTRIBUTE_BGPDENSEU32ATTR_H
#define OVBGP_ATTRIBUTE_BGPDENSEU32ATTR_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// One 32-bit word with three views of its bits:
//
//   valueBool(0..15)   16 flags, bits 0 to 15; the upper half has no flags
//   valueU8(0..3)      four octets
//   valueU16(0..1)     two halves
//
// Part 0 is the least significant one in each view. The views overlap, so a change through one view
// is seen through the others.
//
// An index out of range throws Kiv::RangeException and changes nothing. The parts always exist, so
// each xDel function throws Kiv::NonDeletableAttributeException. The text form is "value=" and the
// word in decimal. A plain value; owner thread only.
class OV_EXPORT BgpDenseU32Attr {
 public:
  // The word 0.
  BgpDenseU32Attr() = default;
  // The given word.
  explicit BgpDenseU32Attr(U32 value) : value_(value) {}
  // Reads the text form. Throws Kiv::RangeException if `text` is anything else or has anything
  // after it.
  explicit BgpDenseU32Attr(const Kiv::String& text);

  // The whole word.
  U32 value() const { return value_; }
  // Replaces the whole word.
  void valueIs(U32 value) { value_ = value; }

  // Flag `i`, 0 to 15.
  bool valueBool(U8 i) const;
  // Sets or clears flag `i`, 0 to 15.
  void valueBoolIs(U8 i, bool b);
  // Always throws Kiv::NonDeletableAttributeException.
  [[noreturn]] void valueBoolDel(U8 i);

  // Octet `i`, 0 to 3.
  U8 valueU8(U8 i) const;
  // Replaces octet `i`, 0 to 3.
  void valueU8Is(U8 i, U8 v);
  // Always throws Kiv::NonDeletableAttributeException.
  [[noreturn]] void valueU8Del(U8 i);

  // Half `i`, 0 or 1.
  U16 valueU16(U8 i) const;
  // Replaces half `i`, 0 or 1.
  void valueU16Is(U8 i, U16 v);
  // Always throws Kiv::NonDeletableAttributeException.
  [[noreturn]] void valueU16Del(U8 i);

  // Compares the words.
  friend bool operator==(const BgpDenseU32Attr&, const BgpDenseU32Attr&) = default;

 private:
  U32 value_ = 0;
};

// The text form, "value=" and the word in decimal.
OV_EXPORT Kiv::String valueToStrep(const BgpDenseU32Attr& attr);
// Writes the word in decimal, without "value=". The stream's number base plays no part.
OV_EXPORT std::ostream& operator<<(std::ostream& os, const BgpDenseU32Attr& attr);

}  // namespace Routing::Bgp

#endif
