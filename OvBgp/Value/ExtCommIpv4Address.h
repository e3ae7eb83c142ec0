// Extended communities with an IPv4 address and a number that the owner of the address chooses.
#ifndef OVBGP_VALUE_EXTCOMMIPV4ADDRESS_H
#define OVBGP_VALUE_EXTCOMMIPV4ADDRESS_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// An IPv4 address specific community (RFC 4360 section 3.2). Octets 2 to 5 are the address, octets
// 6 and 7 the local administrator. Immutable; any thread may read.
class OV_EXPORT ExtCommIpv4Address : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommIpv4Address)

 public:
  // Constructs like ExtCommSubtyped.
  using ExtCommSubtyped::ExtCommSubtyped;

  // The address a.b.c.d as a number in host byte order; a is the most significant octet.
  U32 address() const noexcept { return static_cast<U32>(getContent().value() >> 16); }
  // The local administrator in host byte order.
  U16 localAdmin() const noexcept { return static_cast<U16>(getContent().value()); }

  // Appends the address in dotted decimal, ":" and the local administrator.
  void appendValue(OvFmt::DynamicBufferInterface& to) const;

  // Writes the diagnostic text: names of type and subtype, the address, and the content.
  void formatDerivedType(std::ostream& out) const override;
  // Appends the text of appendValue; for the user interface with the type code and "-IP:" before
  // it.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 protected:
  // As in the base, for objects of exactly this class.
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// A new object, not interned, with notification switched on. Throws std::bad_alloc. The name is
// given by the interface.
OV_EXPORT ExtCommIpv4Address::Ptr ExtCommIpv4AddressIs(ExtCommClassification classification,
                                                       const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
