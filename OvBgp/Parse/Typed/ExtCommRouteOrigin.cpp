#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"

#include "OvBgp/Parse/Typed/Private/ExtCommRouteText.h"

namespace Routing::Bgp {
namespace {

// The words in which the texts of route targets and route origins differ.
constexpr ExtCommRouteWords routeOriginWords{
    .prefix = "SoO:", .uiPrefix = "Route-Origin-", .diagnostic = "RouteOrigin"};

}  // namespace

// The string is the file name that a failed assertion reports.
EXT_COMM_ROUTE_AS_DEFINE(ExtCommRouteOriginAs, extCommRouteOriginAsFactory, routeOriginWords,
                         "OvBgp/Parse/ExtCommRouteOrigin")
EXT_COMM_ROUTE_IPV4_DEFINE(ExtCommRouteOriginIpv4Address, extCommRouteOriginIpv4AddressFactory,
                           routeOriginWords)

}  // namespace Routing::Bgp
