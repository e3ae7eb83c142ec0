#include "Dorn/DumpContext.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <ostream>
#include <string>

namespace Dorn {

KIV_OBJECT_DEFINE(DumpContext)

DumpContext::Ptr dumpContextFactory(std::ostream& out) {
  return DumpContext::Ptr(new DumpContext(out));
}

// Formats into a buffer on the stack. Only a text that does not fit is formatted a second time,
// into a string of its length. A va_list can be used once, hence the copy. std::vsnprintf returns
// a negative length for an invalid format.
void objDumpPrintf(const Kiv::Ptr<const DumpContext>& context, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  std::array<char, 256> room;
  const int length = std::vsnprintf(room.data(), room.size(), format, arguments);
  va_end(arguments);
  if (length > 0 && static_cast<std::size_t>(length) < room.size()) {
    context->out().write(room.data(), length);
  } else if (length > 0) {
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    context->out().write(text.data(), length);
  }
  va_end(again);
}

void objDumpIndent(const Kiv::Ptr<const DumpContext>& context, unsigned int indent) {
  if (indent != 0) objDumpPrintf(context, "%*c", static_cast<int>(indent), ' ');
}

}  // namespace Dorn
