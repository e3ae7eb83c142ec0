#include "Kiv/Exception.h"

namespace Kiv {

// Defined here so that each class has one home for its type information, and an
// exception thrown in one shared library is caught in another.
Exception::~Exception() = default;
RangeException::~RangeException() = default;
NonDeletableAttributeException::~NonDeletableAttributeException() = default;
NullArgumentException::~NullArgumentException() = default;

}  // namespace Kiv
