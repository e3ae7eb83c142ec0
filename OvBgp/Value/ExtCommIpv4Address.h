// Extended communities that hold an IPv4 address and a number of its owner's choice.
#ifndef OVBGP_VALUE_EXTCOMMIPV4ADDRESS_H
#define OVBGP_VALUE_EXTCOMMIPV4ADDRESS_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// IPv4 address specific (RFC 4360 section 3.2).  Immutable, any thread.
class OV_EXPORT ExtCommIpv4Address : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommIpv4Address)

 public:
  using ExtCommSubtyped::ExtCommSubtyped;

  // a.b.c.d as a number, a its most significant octet.
  U32 address() const noexcept { return static_cast<U32>(getContent().value() >> 16); }
  U16 localAdmin() const noexcept { return static_cast<U16>(getContent().value()); }

  // Address, ":", local administrator.
  void appendValue(OvFmt::DynamicBufferInterface& to) const;

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommIpv4Address::Ptr ExtCommIpv4AddressIs(ExtCommClassification classification,
                                                       const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
