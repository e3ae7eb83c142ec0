// The text of a toggle file: one flat JSON object (RFC 8259) of booleans.
#ifndef OVTOGGLES_TOGGLETEXT_H
#define OVTOGGLES_TOGGLETEXT_H

#include <cstddef>
#include <map>
#include <string_view>

#include "Kiv/Exception.h"
#include "Kiv/String.h"

namespace OvToggles {

using ToggleStates = std::map<Kiv::String, bool>;

// Where a text stops being a toggle file.  Lines and columns count from 1, columns
// in octets; what() is "expected ..." and what was found instead.
class ToggleTextError : public Kiv::Exception {
 public:
  ToggleTextError(const Kiv::String& what, std::size_t atLine, std::size_t atColumn)
      : Exception(what), line(atLine), column(atColumn) {}

  const std::size_t line;
  const std::size_t column;
};

// Reads the whole text strictly: no comments, no trailing commas, nothing after
// the object, no name twice.  Raises ToggleTextError.
ToggleStates readToggleText(std::string_view text);

}  // namespace OvToggles

#endif
