// Route targets: which routers may take the route (RFC 4360 section 4).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMROUTETARGET_H
#define OVBGP_PARSE_TYPED_EXTCOMMROUTETARGET_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

namespace Routing::Bgp {

// A route target that starts with an AS number.  Its diagnostic text requires a
// transitive AS type; its value is read by the flag alone.
class OV_EXPORT ExtCommRouteTargetAs final : public ExtCommAsNumber {
  KIV_OBJECT(ExtCommRouteTargetAs)

 public:
  ExtCommRouteTargetAs(const ExtCommContent& content, bool fourOctetAs)
      : ExtCommAsNumber(extCommClassificationRouteTarget, content, fourOctetAs) {}

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// A route target that starts with an IPv4 address.
class OV_EXPORT ExtCommRouteTargetIpv4Address final : public ExtCommIpv4Address {
  KIV_OBJECT(ExtCommRouteTargetIpv4Address)

 public:
  explicit ExtCommRouteTargetIpv4Address(const ExtCommContent& content)
      : ExtCommIpv4Address(extCommClassificationRouteTarget, content) {}

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommRouteTargetAs::Ptr extCommRouteTargetAsFactory(const ExtCommContent& content,
                                                                bool fourOctetAs);
OV_EXPORT ExtCommRouteTargetIpv4Address::Ptr extCommRouteTargetIpv4AddressFactory(
    const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
