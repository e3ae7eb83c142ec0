#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/EnumRegistry.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {
namespace {

// Registers the enumeration, so that tools find it by name.
const Kiv::EnumModule tunnelEnums("ExtCommTunnelEncap",
                                  Kiv::enumInfosOf<Kiv::EnumList<TunnelType>>);

}  // namespace

KIV_OBJECT_DEFINE(ExtCommTunnelEncap)

// An enumerator without a name would print as an empty text, so map it to the marker.
TunnelType ExtCommTunnelEncap::tunnelType() const noexcept {
  const TunnelType type{tunnelTypeNumber()};
  return bgpIsValidEnumMember(type) ? type : tunnelTypeUnknown;
}

// Shows name and number, because the name of an unknown type does not identify it.
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
  // Without the number, different unknown types would have the same text.
  if (type == tunnelTypeUnknown) {
    to.append('-');
    to.appendDecimal(tunnelTypeNumber());
  }
}

ExtCommTunnelEncap::Ptr extCommTunnelEncapFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommTunnelEncap>(content);
}

}  // namespace Routing::Bgp
