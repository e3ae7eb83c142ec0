// Helpers that match and print the text of lists of every kind. Private to the library.
#ifndef OVBGP_LIST_PRIVATE_LISTTEXT_H
#define OVBGP_LIST_PRIVATE_LISTTEXT_H

#include <ostream>

#include "OvFmt/DynamicBuffer.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {

// The buffer for the text of a plain list. Lists on a route have few members; the text of
// about ten fits on the stack.
using ListText = OvFmt::StackBackedBuffer<128>;

// Whether `regex` matches a text of the list. A list has several texts, for example with
// names and with numbers; each of `appendForms` appends one of them to the buffer that is
// its argument. Later texts are not made if an earlier one matches.
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

// Writes the text of an extended list, or "NULL" for a null pointer. The output is
// unformatted: width, fill and base of the stream have no effect.
template <class List>
std::ostream& writeListOrNull(std::ostream& out, const List* list) {
  if (!list) return out.write("NULL", 4);
  list->writeText(out);
  return out;
}

}  // namespace Routing::Bgp

#endif
