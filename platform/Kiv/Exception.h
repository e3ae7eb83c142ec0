// The framework's exceptions. They report bad values: arguments of a caller, texts and data of
// the network. Errors of the program itself stop the process through Kiv/Assert.h.
//
// Any of them may be thrown in one shared library and caught in another, because each class
// exports its type information. what() is English text for a log, without a line end.
#ifndef KIV_EXCEPTION_H
#define KIV_EXCEPTION_H

#include <stdexcept>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Kiv {

// The common base, for a host that handles all refusals of the framework alike. std::bad_alloc is
// not one of them: it passes through the framework unchanged.
class OV_EXPORT Exception : public std::runtime_error {
 public:
  // Takes the text that what() returns. Copies the text, so it may throw std::bad_alloc.
  using std::runtime_error::runtime_error;
  // Defined in the source file, which fixes the type information in one library.
  ~Exception() override;
};

// A value, index, name or text outside the range that the operation accepts. Unless its header
// says otherwise, the operation has changed nothing when it throws this.
class OV_EXPORT RangeException : public Exception {
 public:
  // Takes the text that what() returns.
  using Exception::Exception;
  // Defined in the source file, as in Exception.
  ~RangeException() override;
};

// An attempt to delete an attribute that every object of its class always has.
class OV_EXPORT NonDeletableAttributeException : public Exception {
 public:
  // Takes the text that what() returns.
  using Exception::Exception;
  // Defined in the source file, as in Exception.
  ~NonDeletableAttributeException() override;
};

// A null pointer where the operation needs an object.
class OV_EXPORT NullArgumentException : public Exception {
 public:
  // Takes the text that what() returns.
  using Exception::Exception;
  // Defined in the source file, as in Exception.
  ~NullArgumentException() override;
};

}  // namespace Kiv

#endif
