#include "OvBgp/ExtCommAsNumber.h"

#include <ostream>

#include "OvBgp/ExtCommText.h"
#include "OvBgp/NotifyingObject.h"
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

Kiv::String ExtCommAsNumber::toStrepForPolicy(StrepFormat format) const {
  ExtCommTextBuffer text;
  if (format.isUI()) {
    addExtCommTypeAsString(text, fourOctetAs_ ? "-AS4" : "-AS", getContent());
    text.append(':');
  }
  appendValue(text, format.strepFormatAsdot());
  return text.str();
}

ExtCommAsNumber::Ptr ExtCommAsNumberIs(ExtCommClassification classification,
                                       const ExtCommContent& content, bool fourOctetAs) {
  return notifyingObject<ExtCommAsNumber>(classification, content, fourOctetAs);
}

}  // namespace Routing::Bgp
