#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

namespace Routing::Bgp {
namespace {

constexpr ExtCommRouteWords routeOriginWords{
    .prefix = "SoO:", .uiPrefix = "Route-Origin-", .diagnostic = "RouteOrigin"};

}  // namespace

KIV_OBJECT_DEFINE(ExtCommRouteOriginAs)
KIV_OBJECT_DEFINE(ExtCommRouteOriginIpv4Address)

void ExtCommRouteOriginAs::formatDerivedType(std::ostream& out) const {
  KIV_ASSERT(isRouteAsType(pktType()), "unexpected type", "OvBgp/Parse/ExtCommRouteOrigin");
  writeRouteDiagnostic(out, *this, routeOriginWords);
}

void ExtCommRouteOriginAs::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                           StrepFormat format) const {
  appendRoutePolicyText(to, *this, routeOriginWords, format);
}

void ExtCommRouteOriginIpv4Address::formatDerivedType(std::ostream& out) const {
  writeRouteDiagnostic(out, *this, routeOriginWords);
}

void ExtCommRouteOriginIpv4Address::appendForPolicy(OvFmt::DynamicBufferInterface& to,
                                                    StrepFormat format) const {
  appendRoutePolicyText(to, *this, routeOriginWords, format);
}

ExtCommRouteOriginAs::Ptr extCommRouteOriginAsFactory(const ExtCommContent& content,
                                                      bool fourOctetAs) {
  return Dorn::notifyingObject<ExtCommRouteOriginAs>(content, fourOctetAs);
}

ExtCommRouteOriginIpv4Address::Ptr extCommRouteOriginIpv4AddressFactory(
    const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommRouteOriginIpv4Address>(content);
}

}  // namespace Routing::Bgp
