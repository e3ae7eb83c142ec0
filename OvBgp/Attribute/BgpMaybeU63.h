// An optional integer within the bounds of its kind.
#ifndef OVBGP_ATTRIBUTE_BGPMAYBEU63_H
#define OVBGP_ATTRIBUTE_BGPMAYBEU63_H

#include <compare>

#include "Dorn/MaybeU63.h"
#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// An optional unsigned value of up to 63 bits within the bounds of its kind.
//
// A kind is a class derived from this one that overrides min() and max(); BgpExtCommPktSubtype in
// OvBgp/Value/PacketTypes.h is an example. Invariant: a specified value is within the bounds. A
// number out of bounds makes the value unspecified and throws Kiv::RangeException. The bounds of
// this class itself admit no number at all.
//
// The text form (valueToStrep, operator<<, toStrep) is decimal, or "-" if unspecified. A plain
// value; owner thread only.
class OV_EXPORT BgpMaybeU63 : public Dorn::MaybeU63 {
 public:
  // An unspecified value.
  BgpMaybeU63() = default;
  // A value of this class itself, so any specified `word` throws Kiv::RangeException. A kind must
  // not use this constructor, since the bounds of the kind do not apply while it runs.
  explicit BgpMaybeU63(U64 word) : BgpMaybeU63(word, Unchecked{}) { checkValue(); }

  // Restores the invariant. A specified value out of bounds becomes unspecified, and
  // Kiv::RangeException is thrown.
  virtual void checkValue();
  // The smallest value of the kind.
  virtual U64 min() const;
  // The largest value of the kind, itself included.
  virtual U64 max() const;
  // The number to use for "unspecified" where a number is needed; 0 unless the kind overrides.
  virtual U64 mappedUnspecifiedValue() const;
  // Virtual only so that deleting a kind by a pointer to this class is sound. The library keeps
  // these objects by value.
  virtual ~BgpMaybeU63() = default;

  // Stores a word and checks it as checkValue does. Bit 63 set means "unspecified".
  void valueIs(U64 word) {
    wordIs(word);
    checkValue();
  }

  // The value. An unspecified one stops the process, so callers check isUnspecified() before.
  // NOLINTNEXTLINE(google-explicit-constructor): kinds are used as numbers
  operator U64() const {
    KIV_ASSERT(!isUnspecified(),
               "!isUnspecified() && \"Caller must check isUnspecified() before getting value()\"",
               "OvBgp/OvBgpMiscTypes");
    return word();
  }
  // The value, under the name of the attribute. It stops the process like the conversion.
  U64 value() const { return *this; }
  // The value, or mappedUnspecifiedValue() if it is unspecified.
  U64 valueWithUnspecifiedMapped() const {
    return isUnspecified() ? mappedUnspecifiedValue() : word();
  }
  // The text form.
  Kiv::String toStrep() const;

  // Equality as defined by operator<=>. Values of different kinds may be compared.
  friend bool operator==(const BgpMaybeU63& a, const BgpMaybeU63& b) { return (a <=> b) == 0; }
  // Orders by number. Unspecified values are equal to one another, whatever their other bits, and
  // less than every number. Without this operator the compiler would compare through the conversion
  // to U64, which stops the process on unspecified values.
  friend std::weak_ordering operator<=>(const BgpMaybeU63& a, const BgpMaybeU63& b) {
    if (a.isUnspecified() || b.isUnspecified()) return b.isUnspecified() <=> a.isUnspecified();
    return a.word() <=> b.word();
  }

 protected:
  // Selects the constructor that does not check.
  struct Unchecked {};
  // For kinds. Stores `word` without a check, since virtual calls do not reach the kind yet. The
  // constructor of the most derived kind calls checkValue() in its body.
  BgpMaybeU63(U64 word, Unchecked) : MaybeU63(word) {}
};

// Reads the text form into `target` and moves `it` behind it. Throws Kiv::RangeException in two
// cases, both of which leave `it`. If there is no such text, `target` keeps its value; if the
// number is out of the bounds of the kind, `target` becomes unspecified.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, BgpMaybeU63* target);

}  // namespace Routing::Bgp

#endif
