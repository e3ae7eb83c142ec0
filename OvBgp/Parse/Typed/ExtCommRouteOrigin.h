// Route origins: which routers brought the route in (RFC 4360 section 5).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMROUTEORIGIN_H
#define OVBGP_PARSE_TYPED_EXTCOMMROUTEORIGIN_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

namespace Routing::Bgp {

// A route origin that starts with an AS number.  Its diagnostic text requires a
// transitive AS type; its value is read by the flag alone.
class OV_EXPORT ExtCommRouteOriginAs final : public ExtCommAsNumber {
  KIV_OBJECT(ExtCommRouteOriginAs)

 public:
  ExtCommRouteOriginAs(const ExtCommContent& content, bool fourOctetAs)
      : ExtCommAsNumber(extCommClassificationRouteOrigin, content, fourOctetAs) {}

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// A route origin that starts with an IPv4 address.
class OV_EXPORT ExtCommRouteOriginIpv4Address final : public ExtCommIpv4Address {
  KIV_OBJECT(ExtCommRouteOriginIpv4Address)

 public:
  explicit ExtCommRouteOriginIpv4Address(const ExtCommContent& content)
      : ExtCommIpv4Address(extCommClassificationRouteOrigin, content) {}

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommRouteOriginAs::Ptr extCommRouteOriginAsFactory(const ExtCommContent& content,
                                                                bool fourOctetAs);
OV_EXPORT ExtCommRouteOriginIpv4Address::Ptr extCommRouteOriginIpv4AddressFactory(
    const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
