// The link bandwidth community: how much load a route's last link can take.
#ifndef OVBGP_PARSE_TYPED_EXTCOMMLINKBANDWIDTH_H
#define OVBGP_PARSE_TYPED_EXTCOMMLINKBANDWIDTH_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "Routing/Rib/LinkBandwidth.h"

namespace Routing::Bgp {

// A two-octet AS number and a bandwidth (draft-ietf-idr-link-bandwidth).
class OV_EXPORT ExtCommLinkBandwidth final : public ExtCommAsNumber {
  KIV_OBJECT(ExtCommLinkBandwidth)

 public:
  explicit ExtCommLinkBandwidth(const ExtCommContent& content)
      : ExtCommAsNumber(extCommClassificationLinkBandwidth, content, false) {}

  Rib::LinkBandwidth linkBandwidth() const noexcept {
    return Rib::LinkBandwidth::fromBits(localAdmin4Octets());
  }

  bool isLinkBandwidthWithUnspecifiedAsNumber() const override;
  // Whether the bandwidth is.
  bool isValid() const override;
  // Whether this bandwidth is the smaller one, as with the values of all
  // communities; a NaN never is.  Requires: `other` is a link bandwidth, too.
  bool isBetterThan(const Kiv::Ptr<const ExtComm>& other) const override;

  void formatDerivedType(std::ostream& out) const override;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override;
};

// New, not interned, with notification switched on.
OV_EXPORT ExtCommLinkBandwidth::Ptr extCommLinkBandwidthFactory(const ExtCommContent& content);

}  // namespace Routing::Bgp

#endif
