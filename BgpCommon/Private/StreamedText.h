// Strings made by code that writes to a stream. Private to the library.
#ifndef BGPCOMMON_PRIVATE_STREAMEDTEXT_H
#define BGPCOMMON_PRIVATE_STREAMEDTEXT_H

#include <sstream>
#include <utility>

#include "Kiv/String.h"

namespace Routing::Bgp {

// Calls `write(out)` with a string stream and returns the text written. Throws std::bad_alloc.
//
// By default a stream that has no memory only sets its bad bit, and the text would be cut off
// silently. Hence exceptions are switched on for the bad bit.
template <class Write>
Kiv::String streamedText(const Write& write) {
  std::ostringstream out;
  out.exceptions(std::ios::badbit);
  write(out);
  return std::move(out).str();
}

}  // namespace Routing::Bgp

#endif
