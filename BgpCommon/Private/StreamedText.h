// Texts that are made by writing to a stream.  Private to the library.
#ifndef BGPCOMMON_PRIVATE_STREAMEDTEXT_H
#define BGPCOMMON_PRIVATE_STREAMEDTEXT_H

#include <sstream>
#include <utility>

#include "Kiv/String.h"

namespace Routing::Bgp {

// What `write(out)` writes.  Throws std::bad_alloc: a stream by itself would only note
// that it had no memory, and the text would end there without a word.
template <class Write>
Kiv::String streamedText(const Write& write) {
  std::ostringstream out;
  out.exceptions(std::ios::badbit);
  write(out);
  return std::move(out).str();
}

}  // namespace Routing::Bgp

#endif
