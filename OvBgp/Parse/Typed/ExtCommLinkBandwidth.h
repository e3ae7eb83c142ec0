// ExtCommLinkBandwidth: the link bandwidth community, the capacity of a route's last link.
//
// Routers that balance load over several routes use it as a weight.
#ifndef OVBGP_PARSE_TYPED_EXTCOMMLINKBANDWIDTH_H
#define OVBGP_PARSE_TYPED_EXTCOMMLINKBANDWIDTH_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "Routing/Rib/LinkBandwidth.h"

namespace Routing::Bgp {

// A two-octet AS number and a bandwidth, an IEEE 754 single-precision number of bytes per second
// (draft-ietf-idr-link-bandwidth). Type 0x40, subtype 0x04. Immutable, any thread.
class OV_EXPORT ExtCommLinkBandwidth final : public ExtCommAsNumber {
  KIV_OBJECT(ExtCommLinkBandwidth)

 public:
  // The octets of type and subtype are not checked, and every bandwidth is accepted.
  explicit ExtCommLinkBandwidth(const ExtCommContent& content)
      : ExtCommAsNumber(extCommClassificationLinkBandwidth, content, false) {}

  // Returns the bandwidth from octets 4 to 7. It may be invalid; see isValid().
  Rib::LinkBandwidth linkBandwidth() const noexcept {
    return Rib::LinkBandwidth::fromBits(localAdmin4Octets());
  }

  // Returns whether the AS number is 0.
  bool isLinkBandwidthWithUnspecifiedAsNumber() const override;
  // Returns whether the bandwidth is finite and above 0.
  bool isValid() const override;
  // Returns whether this bandwidth is less than the bandwidth of `other`: for all communities the
  // smaller value is the better one. False if either bandwidth is a NaN. Aborts if `other` is null
  // or another class.
  bool isBetterThan(const Kiv::Ptr<const ExtComm>& other) const override;

  // Writes the diagnostic text: "LinkBandwidth ", AS number, ":" and the bandwidth as a bare
  // number.
  void formatDerivedType(std::ostream& out) const override;
  // Appends a prefix that depends on `format`, the AS number, ":" and the bandwidth, with a
  // unit only in user-interface texts without strepFormatLinkBwWeighted.
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;

 private:
  void policyTextAppend(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    appendForPolicy(to, format);
  }
};

// Returns a new object with notification on, not interned. The octets of type and subtype are not
// checked. Throws std::bad_alloc.
OV_EXPORT ExtCommLinkBandwidth::Ptr extCommLinkBandwidthFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
