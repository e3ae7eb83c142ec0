#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"

#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

namespace Routing::Bgp {
namespace {

// The words in which the texts of route targets and route origins differ.
constexpr ExtCommRouteWords routeTargetWords{
    .prefix = "RT:", .uiPrefix = "Route-Target-", .diagnostic = "RouteTarget"};

}  // namespace

// The string is the file name that a failed assertion reports.
EXT_COMM_ROUTE_AS_DEFINE(ExtCommRouteTargetAs, extCommRouteTargetAsFactory, routeTargetWords,
                         "OvBgp/Parse/ExtCommRouteTarget")
EXT_COMM_ROUTE_IPV4_DEFINE(ExtCommRouteTargetIpv4Address, extCommRouteTargetIpv4AddressFactory,
                           routeTargetWords)

}  // namespace Routing::Bgp
