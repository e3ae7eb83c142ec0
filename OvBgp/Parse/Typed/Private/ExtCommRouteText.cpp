#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

#include <ostream>

#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {
namespace {

// Appends the prefix that `format` asks for. `form` ends the user-interface prefix and names the
// encoding of the value. strepFormatUI without strepFormatClassification asks for no prefix.
void appendPrefix(OvFmt::DynamicBufferInterface& to, const ExtCommRouteWords& words,
                  std::string_view form, ExtComm::StrepFormat format) {
  if (!format.strepFormatClassification()) return;
  if (!format.strepFormatUI()) return to.append(words.prefix);
  to.append(words.uiPrefix);
  to.append(form);
}

}  // namespace

// The prefix follows the flag, because the flag determines how the value is read.
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

// The words follow the type octet, unlike the prefix above. A log then shows if an object was built
// with a flag that contradicts its type. AS numbers are written without a dot.
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
