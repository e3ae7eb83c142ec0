// Extended communities with an AS number and a number that this AS chooses.
#ifndef OVBGP_VALUE_EXTCOMMASNUMBER_H
#define OVBGP_VALUE_EXTCOMMASNUMBER_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

// A two-octet AS specific community (RFC 4360 section 3.1) or a four-octet AS specific one
// (RFC 5668). Octets 2 to 7 are divided differently:
//
//   two-octet form    AS number in octets 2 and 3, local administrator in octets 4 to 7
//   four-octet form   AS number in octets 2 to 5, local administrator in octets 6 and 7
//
// fourOctetAs() alone decides how the octets are read. The code that builds the object sets it to
// what the type octet says. Immutable; any thread may read.
class OV_EXPORT ExtCommAsNumber : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommAsNumber)

 public:
  // An object that is not interned.
  ExtCommAsNumber(ExtCommClassification classification, const ExtCommContent& content,
                  bool fourOctetAs)
      : ExtCommSubtyped(classification, content, fourOctetAs) {}

  // Whether the octets have the four-octet form.
  bool fourOctetAs() const noexcept { return variant(); }
  // The AS number in host byte order.
  U32 asNumber() const noexcept {
    const U64 value = getContent().value();
    return fourOctetAs() ? static_cast<U32>(value >> 16) : static_cast<U16>(value >> 32);
  }
  // The local administrator in host byte order. It has the octets that the AS number leaves.
  U32 localAdmin() const noexcept {
    return fourOctetAs() ? localAdmin2Octets() : localAdmin4Octets();
  }
  // Octets 6 and 7 as a number, whatever the form.
  U16 localAdmin2Octets() const noexcept { return static_cast<U16>(getContent().value()); }
  // Octets 4 to 7 as a number, whatever the form.
  U32 localAdmin4Octets() const noexcept { return static_cast<U32>(getContent().value()); }

  // The AS number in decimal; with `asdot`, a number above 65535 as "high.low" (RFC 5396).
  Kiv::String formatAsNumber(bool asdot) const;
  // Appends the text of formatAsNumber.
  void formatAsNumberToBuffer(OvFmt::DynamicBufferInterface& to, bool asdot) const;
  // Appends the AS number, ":" and the local administrator.
  void appendValue(OvFmt::DynamicBufferInterface& to, bool asdot) const;

  // Writes the diagnostic text: names of type and subtype, the AS number, and the content.
  void formatDerivedType(std::ostream& out) const override;
  // Appends the text of appendValue; for the user interface with the type code and "-AS:" or
  // "-AS4:" before it.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 protected:
  // As in the base, for objects of exactly this class.
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// A new object, not interned, with notification switched on. Throws std::bad_alloc. The name is
// given by the interface.
OV_EXPORT ExtCommAsNumber::Ptr ExtCommAsNumberIs(ExtCommClassification classification,
                                                 const ExtCommContent& content, bool fourOctetAs);

}  // namespace Routing::Bgp

#endif
