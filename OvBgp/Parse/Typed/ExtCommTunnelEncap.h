// ExtCommTunnelEncap: the encapsulation community, the tunnel type to use towards a route's next
// hop.
//
// This header also has the enumeration of tunnel types.
#ifndef OVBGP_PARSE_TYPED_EXTCOMMTUNNELENCAP_H
#define OVBGP_PARSE_TYPED_EXTCOMMTUNNELENCAP_H

#include <iosfwd>

#include "BgpCommon/EnumText.h"
#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// The tunnel types that have a name (RFC 5512, RFC 8365, RFC 9012 section 3). The wire format has
// 16 bits, so tunnelTypeUnknown is 65536, the first number that no message can contain.
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
// Makes the members available as Routing::Bgp::tunnelTypeGre, for example.
using enum TunnelType;
// Declares TunnelTypeInstance(), which looks up a member by number or by name.
KIV_ENUM_INSTANCE_BY_VALUE(TunnelType, TunnelTypeInstance)

// The tunnel type in octets 6 and 7; the octets before it are reserved (RFC 9012 section 4.1). Type
// 0x03, subtype 0x0c. Immutable, any thread.
class OV_EXPORT ExtCommTunnelEncap final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommTunnelEncap)

 public:
  // The octets of type and subtype are not checked, and every tunnel type is accepted.
  explicit ExtCommTunnelEncap(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationTunnelEncap, content) {}

  // Returns the tunnel type; tunnelTypeUnknown if its number has no name.
  TunnelType tunnelType() const noexcept;
  // Returns the number of the tunnel type, octets 6 and 7 as a big-endian number.
  U16 tunnelTypeNumber() const noexcept { return static_cast<U16>(getContent().value()); }

  // Writes the diagnostic text: "TunnelEncap ", the name of the tunnel type, ":" and its number.
  void formatDerivedType(std::ostream& out) const override;
  // Appends "TunnelEncap:" if `format` has strepFormatClassification, and the name of the tunnel
  // type. "-" and the number follow an unknown type.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 private:
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    appendForPolicy(to, format);
  }
};

// Returns a new object with notification on, not interned. The octets of type and subtype are not
// checked. Throws std::bad_alloc.
OV_EXPORT ExtCommTunnelEncap::Ptr extCommTunnelEncapFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
