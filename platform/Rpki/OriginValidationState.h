// The result of validating a route's origin AS against the RPKI (RFC 6811).
#ifndef RPKI_ORIGINVALIDATIONSTATE_H
#define RPKI_ORIGINVALIDATIONSTATE_H

#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Rpki {

// The validation states, with the numbers of the extended community that carries them between peers
// (RFC 8097, section 2). The last enumerator has no number on the wire.
enum class OriginValidationState : U32 {
  // 0: at least one authorisation matches the route.
  valid,
  // 1: no authorisation covers the prefix.
  notFound,
  // 2: authorisations cover the prefix, but none of them matches the route.
  invalid,
  // Stands for every number without a meaning.
  unknown
};

// The state for a number received from a peer; `unknown` for numbers above 2.
constexpr OriginValidationState originValidationStateOf(U32 number) {
  constexpr OriginValidationState unknown = OriginValidationState::unknown;
  return number < static_cast<U32>(unknown) ? OriginValidationState{number} : unknown;
}

// The name of a state: "valid", "not-found", "invalid" or "unknown". A number outside the
// enumeration gives "unknown". The text is a literal and lives for ever. Any thread.
OV_EXPORT std::string_view originValidationStateText(OriginValidationState state);

}  // namespace Rpki

#endif
