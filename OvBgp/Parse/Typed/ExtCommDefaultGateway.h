// The default gateway community: the route is that of a gateway (RFC 7432 section
// 7.8).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMDEFAULTGATEWAY_H
#define OVBGP_PARSE_TYPED_EXTCOMMDEFAULTGATEWAY_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// A mark: what its value octets hold has no meaning.  Immutable, any thread.
class OV_EXPORT ExtCommDefaultGateway final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommDefaultGateway)

 public:
  explicit ExtCommDefaultGateway(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationDefaultGateway, content) {}

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommDefaultGateway::Ptr extCommDefaultGatewayFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
