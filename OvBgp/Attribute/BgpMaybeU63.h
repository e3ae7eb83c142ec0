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

}  // namespace Routing::Bgp

#endif
