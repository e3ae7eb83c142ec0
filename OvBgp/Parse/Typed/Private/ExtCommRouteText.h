// The texts of route targets and route origins, which differ in their words only.
// Private to the library.
#ifndef OVBGP_PARSE_TYPED_PRIVATE_EXTCOMMROUTETEXT_H
#define OVBGP_PARSE_TYPED_PRIVATE_EXTCOMMROUTETEXT_H

#include <iosfwd>
#include <string_view>

#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

namespace Routing::Bgp {

struct ExtCommRouteWords {
  std::string_view prefix;      // of texts with the classification
  std::string_view uiPrefix;    // of user-interface texts; the form of the value follows
  std::string_view diagnostic;  // how diagnostic texts start
};

// Whether `type` is one whose diagnostic text the function below knows.
constexpr bool isRouteAsType(BgpExtCommPktType type) {
  return type == extCommPktTypeTransTwoOctetAs || type == extCommPktTypeTransFourOctetAs;
}

void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommAsNumber& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format);
void appendRoutePolicyText(OvFmt::DynamicBufferInterface& to, const ExtCommIpv4Address& route,
                           const ExtCommRouteWords& words, ExtComm::StrepFormat format);

// The diagnostic texts.  Requires, of the first: isRouteAsType(route.pktType()).
void writeRouteDiagnostic(std::ostream& out, const ExtCommAsNumber& route,
                          const ExtCommRouteWords& words);
void writeRouteDiagnostic(std::ostream& out, const ExtCommIpv4Address& route,
                          const ExtCommRouteWords& words);

}  // namespace Routing::Bgp

#endif
