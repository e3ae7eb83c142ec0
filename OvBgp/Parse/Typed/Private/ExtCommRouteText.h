// The texts of route targets and route origins, and macros that define their classes. Private to
// the library.
//
// The two communities have the same texts except for some words, which ExtCommRouteWords collects.
#ifndef OVBGP_PARSE_TYPED_PRIVATE_EXTCOMMROUTETEXT_H
#define OVBGP_PARSE_TYPED_PRIVATE_EXTCOMMROUTETEXT_H

#include <iosfwd>
#include <string_view>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

namespace Routing::Bgp {

// The words of one community.
struct ExtCommRouteWords {
  std::string_view prefix;      // starts texts with strepFormatClassification
  std::string_view uiPrefix;    // starts user-interface texts; "AS:", "AS4:" or "IP:" follows
  std::string_view diagnostic;  // starts diagnostic texts
};

// Returns whether writeRouteDiagnostic() has a text for an AS number of this type.
constexpr bool isRouteAsType(BgpExtCommPktType type) {
  return type == extCommPktTypeTransTwoOctetAs || type == extCommPktTypeTransFourOctetAs;
}

// Appends the policy text of a community with an AS number: prefix, AS number, ":", local number.
void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommAsNumber& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format);
// Appends the policy text of a community with an IPv4 address: prefix, address, ":", local number.
void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommIpv4Address& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format);

// Writes the diagnostic text of a community with an AS number. Requires
// isRouteAsType(route.pktType()), because the text names the width by the type, not by the flag.
void writeRouteDiagnostic(std::ostream& out, const ExtCommAsNumber& route,
                          const ExtCommRouteWords& words);
// Writes the diagnostic text of a community with an IPv4 address.
void writeRouteDiagnostic(std::ostream& out, const ExtCommIpv4Address& route,
                          const ExtCommRouteWords& words);

}  // namespace Routing::Bgp

// Defines the type record and the policy text of `Class`.
#define EXT_COMM_ROUTE_DEFINE(Class, words)                                                  \
  KIV_OBJECT_DEFINE(Class)                                                                   \
  void Class::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const { \
    appendRoutePolicyText(to, *this, words, format);                                         \
  }

// Defines a class that EXT_COMM_ROUTE_AS_CLASS declares. The assertion is in the member function,
// not in writeRouteDiagnostic(), because its message contains the function's signature. `source`
// names the source file in the message.
#define EXT_COMM_ROUTE_AS_DEFINE(Class, factory, words, source)         \
  EXT_COMM_ROUTE_DEFINE(Class, words)                                   \
  void Class::formatDerivedType(std::ostream& out) const {              \
    KIV_ASSERT(isRouteAsType(pktType()), "unexpected type", source);    \
    writeRouteDiagnostic(out, *this, words);                            \
  }                                                                     \
  Class::Ptr factory(const ExtCommContent& content, bool fourOctetAs) { \
    return Dorn::notifyingObject<Class>(content, fourOctetAs);          \
  }

// Defines a class that EXT_COMM_ROUTE_IPV4_CLASS declares.
#define EXT_COMM_ROUTE_IPV4_DEFINE(Class, factory, words)  \
  EXT_COMM_ROUTE_DEFINE(Class, words)                      \
  void Class::formatDerivedType(std::ostream& out) const { \
    writeRouteDiagnostic(out, *this, words);               \
  }                                                        \
  Class::Ptr factory(const ExtCommContent& content) {      \
    return Dorn::notifyingObject<Class>(content);          \
  }

#endif
