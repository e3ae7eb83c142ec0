// Texts of several values, written directly into the string that is returned. Private to the
// library.
#ifndef OVBGP_VALUE_PRIVATE_WRITTENTEXT_H
#define OVBGP_VALUE_PRIVATE_WRITTENTEXT_H

#include <span>

#include "Kiv/Inline.h"
#include "Kiv/String.h"

namespace Routing::Bgp {

// Writes all `values` with one blank between two of them and returns the end of the text.
// `write(at, value)` writes one value and returns its end. The caller provides the room.
template <class Value, class Write>
char* writeBlankSeparated(char* at, std::span<const Value> values, const Write& write) {
  char* const begin = at;
  for (const Value& value : values) {
    if (at != begin) *at++ = ' ';
    at = write(at, value);
  }
  return at;
}

// Returns the string that `write(at)` writes. `write` returns the end of its text and writes at
// most `room` octets.
//
// The text is written directly into the string. Copying it from a buffer, with wide loads right
// after narrow stores, would cause store-forwarding stalls.
template <class Write>
KIV_INLINE Kiv::String writtenString(std::size_t room, const Write& write) {
  Kiv::String text(room, '\0');
  text.resize(static_cast<std::size_t>(write(text.data()) - text.data()));
  return text;
}

// Returns the text of writeBlankSeparated as a string. A value and a blank take at most `entryMax`
// octets.
//
// A single value is the common case. Its room is a constant, so a small string is made in place,
// without a heap allocation and with a size known to the compiler.
template <std::size_t entryMax, class Value, class Write>
Kiv::String blankSeparated(std::span<const Value> values, const Write& write) {
  if (values.size() == 1) {
    return writtenString(entryMax, [&](char* at) { return write(at, values[0]); });
  }
  return writtenString(values.size() * entryMax,
                       [&](char* at) { return writeBlankSeparated(at, values, write); });
}

}  // namespace Routing::Bgp

#endif
