#include "Dorn/MaybeU63.h"

#include <ostream>

#include "Kiv/Strep.h"

namespace Dorn {

Kiv::String valueToStrep(const MaybeU63& value) {
  return value.isUnspecified() ? "-" : Kiv::valueToStrep(value.word());
}

std::ostream& operator<<(std::ostream& os, const MaybeU63& value) {
  return os << valueToStrep(value);
}

// readUnsigned throws before it moves `it`, and *target is assigned last. So a failure changes
// nothing.
void sequenceToValue(const char*& it, const char* end, MaybeU63* target) {
  if (it != end && *it == '-') {
    ++it;
    *target = MaybeU63();
  } else {
    *target = MaybeU63(Kiv::readUnsigned(it, end, MaybeU63::unspecifiedBit - 1));
  }
}

}  // namespace Dorn
