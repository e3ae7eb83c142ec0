// The text of a list in its forms, as matching and printing want it.  Private to
// the library.
#ifndef OVBGP_LIST_PRIVATE_LISTTEXT_H
#define OVBGP_LIST_PRIVATE_LISTTEXT_H

#include "OvFmt/DynamicBuffer.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {

// Lists on a route have a few communities; the text of ten fits without the heap.
using ListText = OvFmt::StackBackedBuffer<128>;

// Whether `regex` matches one of the texts that `appendForms` make, each of which
// appends a form of the list to a buffer.  The first one that matches decides.
template <class... AppendForm>
bool anyTextMatches(const RouteMap::PosixRegex& regex, const AppendForm&... appendForms) {
  ListText text;
  const auto matches = [&](const auto& appendForm) {
    text.clear();
    appendForm(text);
    return regex.execute(text.str().c_str()) == 0;
  };
  return (matches(appendForms) || ...);
}

}  // namespace Routing::Bgp

#endif
