// ExtCommColor: the color community, which selects the kind of path to a route's next hop.
//
// A sender of the community and the policies of the receiver agree on what a color means, for
// example "low latency" (RFC 9012 section 4.3, RFC 9256 section 8.8.1).
#ifndef OVBGP_PARSE_TYPED_EXTCOMMCOLOR_H
#define OVBGP_PARSE_TYPED_EXTCOMMCOLOR_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// A 32-bit color and the two color-only bits, which tell a receiver what to do if no path has the
// color. Type 0x03, subtype 0x0b. Immutable, any thread.
class OV_EXPORT ExtCommColor final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommColor)

 public:
  // The octets of type and subtype are not checked.
  explicit ExtCommColor(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationColor, content) {}

  // Returns the color, octets 4 to 7 as a big-endian number.
  U32 color() const noexcept { return static_cast<U32>(getContent().value()); }
  // Returns the color-only bits, 0 to 3: the two high bits of octet 2.
  U8 colorOnly() const noexcept { return static_cast<U8>(getContent().value() >> 46 & 3); }

  // Writes the diagnostic text: "Color: ", the color in decimal, and the two bits in parentheses.
  void formatDerivedType(std::ostream& out) const override;
  // Appends "Color:CO(", the two bits, "):" and the color in decimal, for every `format`.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 private:
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    appendForPolicy(to, format);
  }
};

// Returns a new object with notification on, not interned. The octets of type and subtype are not
// checked. Throws std::bad_alloc.
OV_EXPORT ExtCommColor::Ptr extCommColorFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
