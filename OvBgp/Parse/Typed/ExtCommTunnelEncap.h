// The encapsulation community: which kind of tunnel leads to a route's next hop.
#ifndef OVBGP_PARSE_TYPED_EXTCOMMTUNNELENCAP_H
#define OVBGP_PARSE_TYPED_EXTCOMMTUNNELENCAP_H

#include <iosfwd>

#include "BgpCommon/EnumText.h"
#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// Kinds of tunnels (RFC 5512, RFC 8365, RFC 9012 section 3).  As wide as the 16 bits
// that carry it, and "Unknown" just outside that range.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(tunnelTypeL2tpv3OverIp, 1)   \
  enumMember(tunnelTypeGre, 2)            \
  enumMember(tunnelTypeIpInIp, 7)         \
  enumMember(tunnelTypeVxlan, 8)          \
  enumMember(tunnelTypeNvgre, 9)          \
  enumMember(tunnelTypeMpls, 10)          \
  enumMember(tunnelTypeMplsInGre, 11)     \
  enumMember(tunnelTypeVxlanGpe, 12)      \
  enumMarker(tunnelTypeUnknown, 65536)
KIV_ENUM(TunnelType, ENUM_ROWS)
#undef ENUM_ROWS
using enum TunnelType;
KIV_ENUM_INSTANCE_BY_VALUE(TunnelType, TunnelTypeInstance)

// RFC 9012 section 4.1.  Immutable, any thread.
class OV_EXPORT ExtCommTunnelEncap final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommTunnelEncap)

 public:
  explicit ExtCommTunnelEncap(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationTunnelEncap, content) {}

  // The kind of tunnel, or tunnelTypeUnknown if its number has no name.
  TunnelType tunnelType() const noexcept;
  U16 tunnelTypeNumber() const noexcept { return static_cast<U16>(getContent().value()); }

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommTunnelEncap::Ptr extCommTunnelEncapFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
