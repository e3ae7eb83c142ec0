#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

#include <ostream>

#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

// `form` says what stands before the colon of the value.
void appendPrefix(OvFmt::DynamicBufferInterface& to, const ExtCommRouteWords& words,
                  std::string_view form, ExtComm::StrepFormat format) {
  if (!format.strepFormatClassification()) return;
  if (!format.strepFormatUI()) return to.append(words.prefix);
  to.append(words.uiPrefix);
  to.append(form);
}

}  // namespace

void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommAsNumber& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format) {
  appendPrefix(to, words, route.fourOctetAs() ? "AS4:" : "AS:", format);
  route.appendValue(to, format.strepFormatAsdot());
}

void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommIpv4Address& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format) {
  appendPrefix(to, words, "IP:", format);
  route.appendValue(to);
}

void writeRouteDiagnostic(std::ostream& out, const ExtCommAsNumber& route,
                          const ExtCommRouteWords& words) {
  ExtCommTextBuffer text;
  text.append(words.diagnostic);
  text.append(route.pktType() == extCommPktTypeTransTwoOctetAs ? "2ByteASN " : "4ByteASN ");
  route.appendValue(text, false);
  writeExtCommDiagnostic(out, text.view(), route.getContent());
}

void writeRouteDiagnostic(std::ostream& out, const ExtCommIpv4Address& route,
                          const ExtCommRouteWords& words) {
  ExtCommTextBuffer text;
  text.append(words.diagnostic);
  text.append(' ');
  route.appendValue(text);
  writeExtCommDiagnostic(out, text.view(), route.getContent());
}

}  // namespace Routing::Bgp
