// The bandwidth of a link, by which routes over several links share their load.
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

// Bytes per second, as the IEEE 754 single-precision number in which routers tell
// it to each other.  Any such number can be held, whether or not it makes sense as
// a bandwidth; isValid tells.  A plain value.
//
// Texts, numbers in the classic locale with six significant digits:
//   by default   bits per second, decimal units, no blank: "10Gbps", "512Kbps",
//                "0.8bps", "-8bps"; what is no finite number has no unit: "inf"
//   weighted     the bare number, the weight of the link among others: "1.25e+09"
class LinkBandwidth {
 public:
  constexpr LinkBandwidth() = default;  // 0, which is not valid
  constexpr explicit LinkBandwidth(float bytesPerSecond) : bytesPerSecond_(bytesPerSecond) {}
  // From the bits of the number.
  static constexpr LinkBandwidth fromBits(U32 bits) {
    return LinkBandwidth(std::bit_cast<float>(bits));
  }

  constexpr float bytesPerSecond() const { return bytesPerSecond_; }
  constexpr U32 bits() const { return std::bit_cast<U32>(bytesPerSecond_); }
  // Whether it is finite and above 0.
  bool isValid() const { return std::isfinite(bytesPerSecond_) && bytesPerSecond_ > 0; }

  // By number: a NaN is neither less than, greater than nor equal to anything.
  friend constexpr bool operator==(const LinkBandwidth&, const LinkBandwidth&) = default;
  friend constexpr std::partial_ordering operator<=>(const LinkBandwidth&,
                                                     const LinkBandwidth&) = default;

  OV_EXPORT Kiv::String toStrep(bool weighted) const;
  OV_EXPORT void appendText(OvFmt::DynamicBufferInterface& to, bool weighted) const;

 private:
  float bytesPerSecond_ = 0;
};

}  // namespace Routing::Rib

#endif
