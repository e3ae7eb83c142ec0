#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

std::string_view prefixOf(ExtComm::StrepFormat format) {
  if (!format.strepFormatClassification()) return "";
  return format.strepFormatUI() ? "Link-Bandwidth-AS:" : "lbw ";
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommLinkBandwidth)

bool ExtCommLinkBandwidth::isLinkBandwidthWithUnspecifiedAsNumber() const {
  return asNumber() == 0;
}

bool ExtCommLinkBandwidth::isValid() const { return linkBandwidth().isValid(); }

bool ExtCommLinkBandwidth::isBetterThan(const Kiv::Ptr<const ExtComm>& other) const {
  KIV_ASSERT(other && &other->fwkType() == &kivType(), "other is a link bandwidth",
             "OvBgp/Parse/ExtCommLinkBandwidth");
  const auto& rival = static_cast<const ExtCommLinkBandwidth&>(*other);
  return linkBandwidth() < rival.linkBandwidth();
}

void ExtCommLinkBandwidth::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("LinkBandwidth ");
  formatAsNumberToBuffer(words, false);
  words.append(':');
  linkBandwidth().appendText(words, true);
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// Only people are shown a bandwidth with its unit; policies see the bare number.
void ExtCommLinkBandwidth::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                           StrepFormat format) const {
  to.append(prefixOf(format));
  formatAsNumberToBuffer(to, format.strepFormatAsdot());
  to.append(':');
  linkBandwidth().appendText(to, !format.isUI() || format.strepFormatLinkBwWeighted());
}

ExtCommLinkBandwidth::Ptr extCommLinkBandwidthFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommLinkBandwidth>(content);
}

}  // namespace Routing::Bgp
