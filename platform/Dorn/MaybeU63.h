// An optional unsigned integer of up to 63 bits in one 64-bit word.
#ifndef DORN_MAYBEU63_H
#define DORN_MAYBEU63_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Dorn {

// The word is the number itself, or "unspecified" if its top bit is set; the
// other bits then mean nothing.  Text form: the number in decimal, or "-".
//
// A plain value; kinds with bounds of their own derive from it.
class MaybeU63 {
 public:
  static constexpr U64 unspecifiedBit = U64{1} << 63;

  constexpr MaybeU63() = default;  // unspecified
  constexpr explicit MaybeU63(U64 word) : word_(word) {}

  constexpr bool isUnspecified() const { return (word_ & unspecifiedBit) != 0; }
  // As stored, specified or not.
  constexpr U64 word() const { return word_; }

 protected:
  constexpr void wordIs(U64 word) { word_ = word; }

 private:
  U64 word_ = unspecifiedBit;
};

OV_EXPORT Kiv::String valueToStrep(const MaybeU63& value);
OV_EXPORT std::ostream& operator<<(std::ostream& os, const MaybeU63& value);
// Reads the text form from [it, end) and moves `it` behind it.  Throws
// Kiv::RangeException, and changes nothing, if there is none or the number needs
// more than 63 bits.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, MaybeU63* target);

}  // namespace Dorn

#endif
