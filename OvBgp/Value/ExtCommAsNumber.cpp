#include "OvBgp/Value/ExtCommAsNumber.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"
#include "Routing/Bgp/AddressText.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommAsNumber)

Kiv::String ExtCommAsNumber::formatAsNumber(bool asdot) const {
  ExtCommTextBuffer text;
  formatAsNumberToBuffer(text, asdot);
  return text.str();
}

void ExtCommAsNumber::formatAsNumberToBuffer(OvFmt::DynamicBufferInterface& to, bool asdot) const {
  appendAsNumber(to, asNumber(), asdot);
}

void ExtCommAsNumber::appendValue(OvFmt::DynamicBufferInterface& to, bool asdot) const {
  formatAsNumberToBuffer(to, asdot);
  to.append(':');
  to.appendDecimal(localAdmin());
}

void ExtCommAsNumber::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<128> words;
  appendTypeNames(words);
  words.append(" ASN=");
  formatAsNumberToBuffer(words, false);
  writeExtCommDiagnostic(out, words.view(), getContent());
}

void ExtCommAsNumber::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  if (format.isUI()) {
    addExtCommTypeAsString(to, fourOctetAs() ? "-AS4" : "-AS", getContent());
    to.append(':');
  }
  appendValue(to, format.strepFormatAsdot());
}

ExtCommAsNumber::Ptr ExtCommAsNumberIs(ExtCommClassification classification,
                                       const ExtCommContent& content, bool fourOctetAs) {
  return Dorn::notifyingObject<ExtCommAsNumber>(classification, content, fourOctetAs);
}

}  // namespace Routing::Bgp
