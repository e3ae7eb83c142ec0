// The color community: by which kind of path a route's next hop is to be reached.
#ifndef OVBGP_PARSE_TYPED_EXTCOMMCOLOR_H
#define OVBGP_PARSE_TYPED_EXTCOMMCOLOR_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtComm.h"

namespace Routing::Bgp {

// A color and the two bits of flags that say what to do if no path has it (RFC
// 9012 section 4.3, RFC 9256 section 8.8.1).  Immutable, any thread.
class OV_EXPORT ExtCommColor final : public ExtCommSubtyped {
  KIV_OBJECT(ExtCommColor)

 public:
  explicit ExtCommColor(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationColor, content) {}

  U32 color() const noexcept { return static_cast<U32>(getContent().value()); }
  // The color-only bits: the two high bits of the flags, 0 to 3.
  U8 colorOnly() const noexcept { return static_cast<U8>(getContent().value() >> 46 & 3); }

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommColor::Ptr extCommColorFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
