#include "Rpki/OriginValidationState.h"

namespace Rpki {

// No default, so that the compiler asks for the text of a new state.
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
