#include "Rpki/OriginValidationState.h"

namespace Rpki {

// No default label, so that the compiler warns if a new state has no text here.
std::string_view originValidationStateText(OriginValidationState state) {
  using enum OriginValidationState;
  switch (state) {
    case valid:
      return "valid";
    case notFound:
      return "not-found";
    case invalid:
      return "invalid";
    case unknown:
      break;
  }
  return "unknown";
}

}  // namespace Rpki
