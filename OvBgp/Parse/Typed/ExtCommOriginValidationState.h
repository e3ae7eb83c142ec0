// ExtCommOriginValidationState: the origin validation state community, with which a router tells
// its IBGP peers the result of validating a route's origin AS (RFC 8097).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMORIGINVALIDATIONSTATE_H
#define OVBGP_PARSE_TYPED_EXTCOMMORIGINVALIDATIONSTATE_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "Rpki/OriginValidationState.h"

namespace Routing::Bgp {

// The validation state in the last octet; the octets before it are reserved. Type 0x43, subtype
// 0x00. Immutable, any thread.
class OV_EXPORT ExtCommOriginValidationState final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommOriginValidationState)

 public:
  // The octets of type and subtype are not checked, and every state number is accepted.
  explicit ExtCommOriginValidationState(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationOriginValidationState, content) {}

  // Returns the octets that announce `state`: type 0x43, subtype 0x00, two zero octets, and the
  // state as a 32-bit big-endian number.
  static ExtCommContent buildExtCommContent(Rpki::OriginValidationState state);

  // Returns the state; `unknown` for numbers above 2, which RFC 8097 does not define.
  Rpki::OriginValidationState state() const noexcept {
    return Rpki::originValidationStateOf(stateNumber());
  }
  // Returns the last octet, the only octet of the value that is defined (RFC 8097 section 2).
  U8 stateNumber() const noexcept { return static_cast<U8>(getContent().value()); }

  // Writes the diagnostic text: "OriginValidationState " and the state's name; the number follows
  // an unknown state in parentheses.
  void formatDerivedType(std::ostream& out) const override;
  // Appends "Origin-Validation-State:" and the state's name to a user-interface text, and nothing
  // to other texts.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 private:
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    appendForPolicy(to, format);
  }
};

// Returns a new object with notification on, not interned. The octets of type and subtype are not
// checked. Throws std::bad_alloc.
OV_EXPORT ExtCommOriginValidationState::Ptr extCommOriginValidationStateFactory(
    const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
