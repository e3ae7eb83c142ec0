// The bandwidth of a link, as the Link Bandwidth extended community carries it. Routers share the
// load of routes over several links in proportion to it.
#ifndef ROUTING_RIB_LINKBANDWIDTH_H
#define ROUTING_RIB_LINKBANDWIDTH_H

#include <bit>
#include <cmath>
#include <compare>

#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Rib {

// Bytes per second as an IEEE 754 single-precision number, the representation on the wire. Every
// such number is representable, also negative ones and NaN; isValid() tells whether it makes sense
// as a bandwidth. A plain value.
//
// Two text forms, with six significant digits in the classic locale:
//   by default   bits per second with a decimal unit and no blank: "10Gbps", "512Kbps", "0.8bps",
//                "-8bps"; without a unit if not finite: "inf"
//   weighted     bytes per second without a unit, the weight of the link: "1.25e+09"
class LinkBandwidth {
 public:
  // 0, which is not valid.
  constexpr LinkBandwidth() = default;
  // A bandwidth in bytes, not bits, per second.
  constexpr explicit LinkBandwidth(float bytesPerSecond) : bytesPerSecond_(bytesPerSecond) {}
  // The number with these bits: the four octets of the wire, read as a number in network byte
  // order.
  static constexpr LinkBandwidth fromBits(U32 bits) {
    return LinkBandwidth(std::bit_cast<float>(bits));
  }

  // Bytes per second.
  constexpr float bytesPerSecond() const { return bytesPerSecond_; }
  // The bits of the number, the inverse of fromBits().
  constexpr U32 bits() const { return std::bit_cast<U32>(bytesPerSecond_); }
  // Whether the number is finite and greater than 0.
  bool isValid() const { return std::isfinite(bytesPerSecond_) && bytesPerSecond_ > 0; }

  // Equality of the numbers; a NaN equals nothing, and 0 equals -0.
  friend constexpr bool operator==(const LinkBandwidth&, const LinkBandwidth&) = default;
  // The order of the numbers. Partial, because a NaN is unordered.
  friend constexpr std::partial_ordering operator<=>(const LinkBandwidth&,
                                                     const LinkBandwidth&) = default;

  // The text, in the weighted or in the default form.
  OV_EXPORT Kiv::String toStrep(bool weighted) const;
  // Appends the same text to a buffer.
  OV_EXPORT void appendText(OvFmt::DynamicBufferInterface& to, bool weighted) const;

 private:
  float bytesPerSecond_ = 0;
};

}  // namespace Routing::Rib

#endif
