// ExtCommRouteTargetAs, ExtCommRouteTargetIpv4Address: route targets, which select the VRFs that
// may import a route (RFC 4360 section 4).
//
// The policy text is the AS number or address, ":" and the local number. In front of these,
// strepFormatClassification writes "RT:", or, together with strepFormatUI, "Route-Target-AS:",
// "Route-Target-AS4:" or "Route-Target-IP:".
#ifndef OVBGP_PARSE_TYPED_EXTCOMMROUTETARGET_H
#define OVBGP_PARSE_TYPED_EXTCOMMROUTETARGET_H

#include "OvBgp/Parse/Typed/Detail/ExtCommRouteClasses.h"

namespace Routing::Bgp {

// A route target that starts with a two-octet AS number (type 0x00) or, with the flag, a four-octet
// AS number (type 0x02); subtype 0x02.
EXT_COMM_ROUTE_AS_CLASS(ExtCommRouteTargetAs, extCommRouteTargetAsFactory,
                        extCommClassificationRouteTarget);

// A route target that starts with an IPv4 address; type 0x01, subtype 0x02.
EXT_COMM_ROUTE_IPV4_CLASS(ExtCommRouteTargetIpv4Address, extCommRouteTargetIpv4AddressFactory,
                          extCommClassificationRouteTarget);

}  // namespace Routing::Bgp

#endif
