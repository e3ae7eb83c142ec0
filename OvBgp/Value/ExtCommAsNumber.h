// Extended communities that hold an AS number and a number of that AS's choice.
#ifndef OVBGP_VALUE_EXTCOMMASNUMBER_H
#define OVBGP_VALUE_EXTCOMMASNUMBER_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// Two-octet AS specific (RFC 4360 section 3.1) or, with the flag, four-octet AS
// specific (RFC 5668).  The flag alone says how the octets are read, and whoever
// builds the object takes it from the type.  Immutable, any thread.
class OV_EXPORT ExtCommAsNumber : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommAsNumber)

 public:
  ExtCommAsNumber(ExtCommClassification classification, const ExtCommContent& content,
                  bool fourOctetAs)
      : ExtCommSubtyped(classification, content, fourOctetAs) {}

  bool fourOctetAs() const noexcept { return variant(); }
  U32 asNumber() const noexcept {
    const U64 value = getContent().value();
    return fourOctetAs() ? static_cast<U32>(value >> 16) : static_cast<U16>(value >> 32);
  }
  // The local administrator, which takes the octets that the AS number leaves.
  U32 localAdmin() const noexcept {
    return fourOctetAs() ? localAdmin2Octets() : localAdmin4Octets();
  }
  U16 localAdmin2Octets() const noexcept { return static_cast<U16>(getContent().value()); }
  U32 localAdmin4Octets() const noexcept { return static_cast<U32>(getContent().value()); }

  // The AS number in decimal; with `asdot`, one above 65535 as "high.low".
  Kiv::String formatAsNumber(bool asdot) const;
  void formatAsNumberToBuffer(OvFmt::DynamicBufferInterface& to, bool asdot) const;
  // AS number, ":", local administrator.
  void appendValue(OvFmt::DynamicBufferInterface& to, bool asdot) const;

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommAsNumber::Ptr ExtCommAsNumberIs(ExtCommClassification classification,
                                                 const ExtCommContent& content, bool fourOctetAs);

}  // namespace Routing::Bgp

#endif
