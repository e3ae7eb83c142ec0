#include "OvBgp/Value/ExtCommContent.h"

#include <ostream>

#include "Kiv/Strep.h"

namespace Routing::Bgp {

// Digits are written by hand, from the last one to the first, and put out unformatted. Formatted
// output resets the width of the stream, so this function does, too.
std::ostream& operator<<(std::ostream& os, const ExtCommContent& content) {
  char text[18] = {'0', 'x'};
  U64 rest = content.value();
  for (char* digit = text + sizeof text; digit != text + 2; rest >>= 4) {
    *--digit = "0123456789abcdef"[rest & 0xf];
  }
  os.width(0);
  return os.write(text, sizeof text);
}

Kiv::String valueToStrep(const ExtCommContent& content) {
  return Kiv::valueToStrep(content.value());
}

// Reads into a local number first, so that `target` is unchanged if the reader throws.
void sequenceToValue(const char*& it, const char* end, ExtCommContent* target) {
  U64 value = 0;
  Kiv::sequenceToValue(it, end, &value);
  *target = ExtCommContent(value);
}

}  // namespace Routing::Bgp
