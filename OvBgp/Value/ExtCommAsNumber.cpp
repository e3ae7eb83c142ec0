#include "OvBgp/Value/ExtCommAsNumber.h"

#include <ostream>
#include <typeinfo>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"
#include "Routing/Bgp/Detail/AdministratorText.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommAsNumber)

Kiv::String ExtCommAsNumber::formatAsNumber(bool asdot) const {
  ExtCommTextBuffer text;
  formatAsNumberToBuffer(text, asdot);
  return text.str();
}

// The platform writes AS numbers, so that they look alike in route targets and communities.
void ExtCommAsNumber::formatAsNumberToBuffer(OvFmt::DynamicBufferInterface& to, bool asdot) const {
  appendAsNumber(to, asNumber(), asdot);
}

void ExtCommAsNumber::appendValue(OvFmt::DynamicBufferInterface& to, bool asdot) const {
  formatAsNumberToBuffer(to, asdot);
  to.append(':');
  to.appendDecimal(localAdmin());
}

// Diagnostic texts never use asdot, so that logs of all hosts can be compared.
void ExtCommAsNumber::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<128> words;
  appendTypeNames(words);
  words.append(" ASN=");
  formatAsNumberToBuffer(words, false);
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// The suffix tells the two forms apart: their AS number and local administrator can have the same
// text although the octets differ.
void ExtCommAsNumber::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const {
  if (format.isUI()) {
    addExtCommTypeAsString(to, fourOctetAs() ? "-AS4" : "-AS", getContent());
    to.append(':');
  }
  appendValue(to, format.strepFormatAsdot());
}

// A subclass may override toStrepForPolicy, hence the comparison of the exact class (see
// ExtComm::policyTextAppend).
void ExtCommAsNumber::policyTextAppend(OvFmt::DynamicBufferInterface& to,
                                       StrepFormat format) const {
  if (&typeid(*this) == &typeid(ExtCommAsNumber))
    return ExtCommAsNumber::appendForPolicy(to, format);
  ExtComm::policyTextAppend(to, format);
}

ExtCommAsNumber::Ptr ExtCommAsNumberIs(ExtCommClassification classification,
                                       const ExtCommContent& content, bool fourOctetAs) {
  return Dorn::notifyingObject<ExtCommAsNumber>(classification, content, fourOctetAs);
}

}  // namespace Routing::Bgp
