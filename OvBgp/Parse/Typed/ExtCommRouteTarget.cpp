#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

namespace Routing::Bgp {
namespace {

constexpr ExtCommRouteWords routeTargetWords{
    .prefix = "RT:", .uiPrefix = "Route-Target-", .diagnostic = "RouteTarget"};

}  // namespace

KIV_OBJECT_DEFINE(ExtCommRouteTargetAs)
KIV_OBJECT_DEFINE(ExtCommRouteTargetIpv4Address)

void ExtCommRouteTargetAs::formatDerivedType(std::ostream& out) const {
  KIV_ASSERT(isRouteAsType(pktType()), "unexpected type", "OvBgp/Parse/ExtCommRouteTarget");
  writeRouteDiagnostic(out, *this, routeTargetWords);
}

void ExtCommRouteTargetAs::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                           StrepFormat format) const {
  appendRoutePolicyText(to, *this, routeTargetWords, format);
}

void ExtCommRouteTargetIpv4Address::formatDerivedType(std::ostream& out) const {
  writeRouteDiagnostic(out, *this, routeTargetWords);
}

void ExtCommRouteTargetIpv4Address::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                                    StrepFormat format) const {
  appendRoutePolicyText(to, *this, routeTargetWords, format);
}

ExtCommRouteTargetAs::Ptr extCommRouteTargetAsFactory(const ExtCommContent& content,
                                                      bool fourOctetAs) {
  return Dorn::notifyingObject<ExtCommRouteTargetAs>(content, fourOctetAs);
}

ExtCommRouteTargetIpv4Address::Ptr extCommRouteTargetIpv4AddressFactory(
    const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommRouteTargetIpv4Address>(content);
}

}  // namespace Routing::Bgp
