// The origin validation state community: what a neighbour found out about a
// route's origin (RFC 8097).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMORIGINVALIDATIONSTATE_H
#define OVBGP_PARSE_TYPED_EXTCOMMORIGINVALIDATIONSTATE_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "Rpki/OriginValidationState.h"

namespace Routing::Bgp {

// Immutable, any thread.
class OV_EXPORT ExtCommOriginValidationState final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommOriginValidationState)

 public:
  explicit ExtCommOriginValidationState(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationOriginValidationState, content) {}

  // The value that tells `state` to a neighbour.
  static ExtCommContent buildExtCommContent(Rpki::OriginValidationState state);

  Rpki::OriginValidationState state() const noexcept {
    return Rpki::originValidationStateOf(stateNumber());
  }
  // The last octet, which alone holds the state (RFC 8097 section 2).
  U8 stateNumber() const noexcept { return static_cast<U8>(getContent().value()); }

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommOriginValidationState::Ptr extCommOriginValidationStateFactory(
    const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
