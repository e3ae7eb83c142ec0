// The text of an address, for values that name an object by where it is.
#ifndef KIV_RAWPOINTER_H
#define KIV_RAWPOINTER_H

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Kiv {

// An uncounted pointer as a plain value. Its text is 0x and the address in
// lower-case hexadecimal digits without leading zeros: "0x0" for null.
struct RawPointer {
  const void* address = nullptr;
};

OV_EXPORT String valueToStrep(RawPointer pointer);
// Throws RangeException, and changes nothing, if no address of this machine's
// width stands there. Whether there is an object is not for a reader to say.
OV_EXPORT void sequenceToValue(const char*& it, const char* end, RawPointer* target);

}  // namespace Kiv

#endif
