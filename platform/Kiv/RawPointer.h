// The text form of an address, for values that identify an object by its address.
#ifndef KIV_RAWPOINTER_H
#define KIV_RAWPOINTER_H

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Kiv {

// An address as a plain value. It owns nothing and keeps nothing alive, so it must not be
// dereferenced without other knowledge about the object.
struct RawPointer {
  // The address; null stands for "no object".
  const void* address = nullptr;
};

// Returns "0x" and the address in lower-case hexadecimal digits without leading zeros; null gives
// "0x0". Throws std::bad_alloc only.
OV_EXPORT String valueToStrep(RawPointer pointer);

// Reads an address from [it, end) into `target` and moves `it` behind it. Digits of either case and
// leading zeros are accepted. Throws RangeException, and changes neither `it` nor `target`, if
// the text does not start with an address or if the address has more bits than a pointer. The
// reader cannot check whether an object exists at the address.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RawPointer* target);

}  // namespace Kiv

#endif
