// The text of a toggle file: one flat JSON object (RFC 8259) of booleans.
//
// Private to the library.
#ifndef OVTOGGLES_PRIVATE_TOGGLETEXT_H
#define OVTOGGLES_PRIVATE_TOGGLETEXT_H

#include <cstddef>
#include <map>
#include <string_view>

#include "Kiv/Exception.h"
#include "Kiv/String.h"

namespace OvToggles {

// The states by the names of the toggles, in UTF-8.
using ToggleStates = std::map<Kiv::String, bool>;

// A syntax error in a toggle file, and its place. what() is "expected ..., found ...", without the
// place.
class ToggleTextError : public Kiv::Exception {
 public:
  // Takes the text of what() and the place.
  ToggleTextError(const Kiv::String& what, std::size_t atLine, std::size_t atColumn)
      : Exception(what), line(atLine), column(atColumn) {}

  // Line of the error, from 1.
  const std::size_t line;
  // Column of the error in octets, from 1.
  const std::size_t column;
};

// Reads the whole text, strictly: no comments, no trailing commas, nothing behind the object, no
// name twice. Octets above 127 in names are taken over without a check for valid UTF-8. Raises
// ToggleTextError. Any thread.
ToggleStates readToggleText(std::string_view text);

}  // namespace OvToggles

#endif
