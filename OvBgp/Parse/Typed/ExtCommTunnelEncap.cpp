#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/EnumRegistry.h"
#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

const Kiv::EnumModule tunnelEnums("ExtCommTunnelEncap",
                                  Kiv::enumInfosOf<Kiv::EnumList<TunnelType>>);

}  // namespace

KIV_OBJECT_DEFINE(ExtCommTunnelEncap)

TunnelType ExtCommTunnelEncap::tunnelType() const noexcept {
  const TunnelType type{tunnelTypeNumber()};
  return bgpIsValidEnumMember(type) ? type : tunnelTypeUnknown;
}

void ExtCommTunnelEncap::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("TunnelEncap ");
  words.append(Kiv::enumName(tunnelType()));
  words.append(':');
  words.appendDecimal(tunnelTypeNumber());
  writeExtCommDiagnostic(out, words.view(), getContent());
}

void ExtCommTunnelEncap::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                         StrepFormat format) const {
  const TunnelType type = tunnelType();
  if (format.strepFormatClassification()) to.append("TunnelEncap:");
  to.append(Kiv::enumName(type));
  if (type == tunnelTypeUnknown) {
    to.append('-');
    to.appendDecimal(tunnelTypeNumber());
  }
}

ExtCommTunnelEncap::Ptr extCommTunnelEncapFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommTunnelEncap>(content);
}

}  // namespace Routing::Bgp
