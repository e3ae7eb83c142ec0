// Two small value types that records share: an optional bounded integer, and a
// word that holds several small attributes.
#ifndef OVBGP_OVBGPMISCTYPES_H
#define OVBGP_OVBGPMISCTYPES_H

#include <compare>
#include <iosfwd>

#include "Dorn/MaybeU63.h"
#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// An optional unsigned value of up to 63 bits within the bounds of its kind.
//
// Kinds derive from it and override min() and max().  A specified value is
// always within them: what would break that is replaced by "unspecified" and
// reported with Kiv::RangeException.  This class itself admits no value at all.
//
// Text form (valueToStrep, operator<<, toStrep): decimal, or "-" if unspecified.
// A plain value: owner thread only.
class OV_EXPORT BgpMaybeU63 : public Dorn::MaybeU63 {
 public:
  BgpMaybeU63() = default;  // unspecified
  // Not for kinds: their bounds do not hold yet while this runs.
  explicit BgpMaybeU63(U64 word) : BgpMaybeU63(word, Unchecked{}) { checkValue(); }

  // Makes the value unspecified and throws RangeException if it is specified and
  // out of bounds.
  virtual void checkValue();
  virtual U64 min() const;
  virtual U64 max() const;
  virtual U64 mappedUnspecifiedValue() const;

  // Stores a word and checks it.
  void valueIs(U64 word) {
    wordIs(word);
    checkValue();
  }

  // The value; aborts if it is unspecified, so ask first.
  // NOLINTNEXTLINE(google-explicit-constructor): it stands for its value
  operator U64() const {
    KIV_ASSERT(!isUnspecified(),
               "!isUnspecified() && \"Caller must check isUnspecified() before getting value()\"",
               "OvBgp/OvBgpMiscTypes");
    return word();
  }
  U64 valueWithUnspecifiedMapped() const {
    return isUnspecified() ? mappedUnspecifiedValue() : word();
  }
  Kiv::String toStrep() const;

  // Unspecified values are equal to one another, whatever their words, and come
  // before all others.  Kinds compare with one another by value; all operators
  // are here, so that none falls back on the conversion.
  friend bool operator==(const BgpMaybeU63& a, const BgpMaybeU63& b) { return (a <=> b) == 0; }
  friend std::weak_ordering operator<=>(const BgpMaybeU63& a, const BgpMaybeU63& b) {
    if (a.isUnspecified() || b.isUnspecified()) return b.isUnspecified() <=> a.isUnspecified();
    return a.word() <=> b.word();
  }

 protected:
  struct Unchecked {};
  // For kinds.  Only the constructor of the most derived one checks.
  BgpMaybeU63(U64 word, Unchecked) : MaybeU63(word) {}
};

// Reads the text form of Dorn::MaybeU63 into `target`.  Throws RangeException if
// there is none (nothing changes), or its value is out of the kind's bounds
// (`target` becomes unspecified); `it` moves only if neither is so.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, BgpMaybeU63* target);

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
