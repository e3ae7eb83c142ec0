// ExtCommDefaultGateway: the default gateway community of EVPN, which marks a route as the route of
// a gateway (RFC 7432 section 7.8).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMDEFAULTGATEWAY_H
#define OVBGP_PARSE_TYPED_EXTCOMMDEFAULTGATEWAY_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// A mark without content: the six value octets have no meaning, but they take part in equality, as
// with every community. Type 0x03, subtype 0x0d. Immutable, any thread.
class OV_EXPORT ExtCommDefaultGateway final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommDefaultGateway)

 public:
  // The octets of type and subtype are not checked.
  explicit ExtCommDefaultGateway(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationDefaultGateway, content) {}

  // Writes the diagnostic text: "DefaultGateway".
  void formatDerivedType(std::ostream& out) const override;
  // Appends "DefaultGateway", for every `format`.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 private:
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    appendForPolicy(to, format);
  }
};

// Returns a new object with notification on, not interned. The octets of type and subtype are not
// checked. Throws std::bad_alloc.
OV_EXPORT ExtCommDefaultGateway::Ptr extCommDefaultGatewayFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
