// Texts of several values, written into the memory where they stay.  Private to the
// library.
#ifndef OVBGP_VALUE_PRIVATE_WRITTENTEXT_H
#define OVBGP_VALUE_PRIVATE_WRITTENTEXT_H

#include <span>

#include "Kiv/Inline.h"
#include "Kiv/String.h"

namespace Routing::Bgp {

// Writes `values`, each by `write(at, value)`, with one blank between; returns the end.
template <class Value, class Write>
char* writeBlankSeparated(char* at, std::span<const Value> values, const Write& write) {
  char* const begin = at;
  for (const Value& value : values) {
    if (at != begin) *at++ = ' ';
    at = write(at, value);
  }
  return at;
}

// A string of at most `room` octets, as `write(at)` writes it and returns its end. Made
// where it stays: what is written piece by piece and then copied at once has to be
// waited for.
template <class Write>
KIV_INLINE Kiv::String writtenString(std::size_t room, const Write& write) {
  Kiv::String text(room, '\0');
  text.resize(static_cast<std::size_t>(write(text.data()) - text.data()));
  return text;
}

// What writeBlankSeparated writes; a value and a blank take `entryMax` octets at most.
// The room for one value is known to the compiler, and needs no heap where it is small.
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
