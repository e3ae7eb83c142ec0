#include "OvBgp/Value/ExtCommIpv4Address.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"
#include "Routing/Bgp/AddressText.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIpv4Address)

void ExtCommIpv4Address::appendValue(OvFmt::DynamicBufferInterface& to) const {
  appendIpv4Address(to, address());
  to.append(':');
  to.appendDecimal(localAdmin());
}

void ExtCommIpv4Address::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<128> words;
  appendTypeNames(words);
  words.append(' ');
  appendIpv4Address(words, address());
  writeExtCommDiagnostic(out, words.view(), getContent());
}

void ExtCommIpv4Address::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                         StrepFormat format) const {
  if (format.isUI()) {
    addExtCommTypeAsString(to, "-IP", getContent());
    to.append(':');
  }
  appendValue(to);
}

ExtCommIpv4Address::Ptr ExtCommIpv4AddressIs(ExtCommClassification classification,
                                             const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommIpv4Address>(classification, content);
}

}  // namespace Routing::Bgp
