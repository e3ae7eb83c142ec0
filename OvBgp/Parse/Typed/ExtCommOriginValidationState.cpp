#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommOriginValidationState)

// The state fills octets 4 to 7, and octets 2 and 3 are reserved and sent as zero (RFC 8097 section
// 2). A receiver reads octet 7 only.
ExtCommContent ExtCommOriginValidationState::buildExtCommContent(
    Rpki::OriginValidationState state) {
  constexpr U64 type = Kiv::enumValue(extCommPktTypeNonTransOpaque);
  constexpr U64 subtype = Kiv::enumValue(extCommPktSubtypeNonTransOriginValidationState);
  return ExtCommContent(type << 56 | subtype << 48 | static_cast<U32>(state));
}

void ExtCommOriginValidationState::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("OriginValidationState ");
  words.append(Rpki::originValidationStateText(state()));
  // Different unknown numbers share the name "unknown", so the number identifies them.
  if (state() == Rpki::OriginValidationState::unknown) {
    words.append('(');
    words.appendDecimal(stateNumber());
    words.append(')');
  }
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// Only the user-interface text shows the state. Texts for policies are empty.
void ExtCommOriginValidationState::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                                   StrepFormat format) const {
  if (!format.isUI()) return;
  to.append("Origin-Validation-State:");
  to.append(Rpki::originValidationStateText(state()));
}

ExtCommOriginValidationState::Ptr extCommOriginValidationStateFactory(
    const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommOriginValidationState>(content);
}

}  // namespace Routing::Bgp
