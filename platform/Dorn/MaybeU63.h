// MaybeU63: an optional unsigned integer of up to 63 bits, in one 64-bit word.
#ifndef DORN_MAYBEU63_H
#define DORN_MAYBEU63_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Dorn {

// The word is the number itself, or "unspecified" if its top bit is set; the other bits then have
// no meaning. Text form: the number in decimal, or "-" for unspecified.
//
// A plain value, copied like a number. Types with a smaller range derive from it.
class MaybeU63 {
 public:
  // The top bit; also the word of a default value.
  static constexpr U64 unspecifiedBit = U64{1} << 63;

  // Unspecified.
  constexpr MaybeU63() = default;
  // The value whose word is `word`: any 64 bits are valid.
  constexpr explicit MaybeU63(U64 word) : word_(word) {}

  // Whether there is no number.
  constexpr bool isUnspecified() const { return (word_ & unspecifiedBit) != 0; }
  // The word as it was given; the number only if !isUnspecified().
  constexpr U64 word() const { return word_; }

 protected:
  // Replaces the word. For subclasses, which check their own range first.
  constexpr void wordIs(U64 word) { word_ = word; }

 private:
  U64 word_ = unspecifiedBit;
};

// The text form. Throws std::bad_alloc.
OV_EXPORT Kiv::String valueToStrep(const MaybeU63& value);
// Writes the text form.
OV_EXPORT std::ostream& operator<<(std::ostream& os, const MaybeU63& value);
// Reads the text form at the start of [it, end) into *target and moves `it` behind the text that
// it has read. Throws Kiv::RangeException, and changes nothing, if there is no number and no "-",
// or if the number needs more than 63 bits.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, MaybeU63* target);

}  // namespace Dorn

#endif
