// The framework's exceptions: how bad values are refused.
//
// They are for values that a caller, a text or the network supplied.  Broken
// programs are stopped by Kiv/Assert.h instead.
#ifndef KIV_EXCEPTION_H
#define KIV_EXCEPTION_H

#include <stdexcept>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Kiv {

// Root of all of them; what() says what was wrong, in the operation's own
// words where its header gives some.
class OV_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

// A value, index, name or text outside what the operation allows.
class OV_EXPORT RangeException : public Exception {
 public:
  using Exception::Exception;
  ~RangeException() override;
};

// An attempt to delete an attribute that always exists.
class OV_EXPORT NonDeletableAttributeException : public Exception {
 public:
  using Exception::Exception;
  ~NonDeletableAttributeException() override;
};

// A null pointer where the operation needs an object.
class OV_EXPORT NullArgumentException : public Exception {
 public:
  using Exception::Exception;
  ~NullArgumentException() override;
};

}  // namespace Kiv

#endif
