#include "Kiv/Exception.h"

namespace Kiv {

// A class with an out-of-line virtual function has its type information in one object file only.
// An exception thrown in one shared library is therefore recognised when another one catches it.
Exception::~Exception() = default;
RangeException::~RangeException() = default;
NonDeletableAttributeException::~NonDeletableAttributeException() = default;
NullArgumentException::~NullArgumentException() = default;

}  // namespace Kiv
