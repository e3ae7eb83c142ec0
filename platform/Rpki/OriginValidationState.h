// What origin validation says about a route (RFC 6811).
#ifndef RPKI_ORIGINVALIDATIONSTATE_H
#define RPKI_ORIGINVALIDATIONSTATE_H

#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Rpki {

// Numbered as neighbours tell them to each other (RFC 8097 section 2), up to the
// last one, which stands for every number that has no meaning.
enum class OriginValidationState : U32 { valid, notFound, invalid, unknown };

constexpr OriginValidationState originValidationStateOf(U32 number) {
  constexpr OriginValidationState unknown = OriginValidationState::unknown;
  return number < static_cast<U32>(unknown) ? OriginValidationState{number} : unknown;
}

// "valid", "not-found", "invalid" or "unknown".
OV_EXPORT std::string_view originValidationStateText(OriginValidationState state);

}  // namespace Rpki

#endif
