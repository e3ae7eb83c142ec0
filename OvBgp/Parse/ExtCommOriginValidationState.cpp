#include "OvBgp/Parse/ExtCommOriginValidationState.h"

#include <ostream>

#include "OvBgp/ExtCommText.h"
#include "OvBgp/NotifyingObject.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommOriginValidationState)

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
  if (state() == Rpki::OriginValidationState::unknown) {
    words.append('(');
    words.appendDecimal(stateNumber());
    words.append(')');
  }
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// It has a user-interface text only.
Kiv::String ExtCommOriginValidationState::toStrepForPolicy(StrepFormat format) const {
  if (!format.isUI()) return {};
  ExtCommTextBuffer text;
  text.append("Origin-Validation-State:");
  text.append(Rpki::originValidationStateText(state()));
  return text.str();
}

ExtCommOriginValidationState::Ptr extCommOriginValidationStateFactory(
    const ExtCommContent& content) {
  return notifyingObject<ExtCommOriginValidationState>(content);
}

}  // namespace Routing::Bgp
