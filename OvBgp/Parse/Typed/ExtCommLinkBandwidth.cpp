#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {
namespace {

// strepFormatUI without strepFormatClassification asks for no prefix. The policy prefix ends with a
// blank; the prefixes of all other communities end with a colon.
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

// Compares bandwidths instead of contents. The AS number has higher bits in the content and would
// decide otherwise.
bool ExtCommLinkBandwidth::isBetterThan(const Kiv::Ptr<const ExtComm>& other) const {
  KIV_ASSERT(other && &other->fwkType() == &kivType(), "other is a link bandwidth",
             "OvBgp/Parse/ExtCommLinkBandwidth");
  const auto& rival = static_cast<const ExtCommLinkBandwidth&>(*other);
  return linkBandwidth() < rival.linkBandwidth();
}

// Logs show plain numbers: the AS number without a dot, the bandwidth without a unit.
void ExtCommLinkBandwidth::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("LinkBandwidth ");
  formatAsNumberToBuffer(words, false);
  words.append(':');
  linkBandwidth().appendText(words, true);
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// Policies compare the text, so they get the bare number; only people read the text with a unit.
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
