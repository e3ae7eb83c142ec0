#include "OvBgp/Value/ExtCommIpv4Address.h"

#include <ostream>
#include <typeinfo>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"
#include "Routing/Bgp/Detail/AdministratorText.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIpv4Address)

// The same form as that of route targets with an address, for example 192.0.2.1:100.
void ExtCommIpv4Address::appendValue(OvFmt::DynamicBufferInterface& to) const {
  appendIpv4Address(to, address());
  to.append(':');
  to.appendDecimal(localAdmin());
}

// The local administrator is not written apart, as the content that follows has its octets.
void ExtCommIpv4Address::formatDerivedType(std::ostream& out) const {
  OvFmt::StackBackedBuffer<128> words;
  appendTypeNames(words);
  words.append(' ');
  appendIpv4Address(words, address());
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// The text is the same with and without asdot, since there is no AS number.
void ExtCommIpv4Address::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                         StrepFormat format) const {
  if (format.isUI()) {
    addExtCommTypeAsString(to, "-IP", getContent());
    to.append(':');
  }
  appendValue(to);
}

// A subclass may override toStrepForPolicy, hence the comparison of the exact class (see
// ExtComm::policyTextAppend).
void ExtCommIpv4Address::policyTextAppend(OvFmt::DynamicBufferInterface& to,
                                          StrepFormat format) const {
  if (&typeid(*this) == &typeid(ExtCommIpv4Address))
    return ExtCommIpv4Address::appendForPolicy(to, format);
  ExtComm::policyTextAppend(to, format);
}

ExtCommIpv4Address::Ptr ExtCommIpv4AddressIs(ExtCommClassification classification,
                                             const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommIpv4Address>(classification, content);
}

}  // namespace Routing::Bgp
