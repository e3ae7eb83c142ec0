// ExtCommRouteOriginAs, ExtCommRouteOriginIpv4Address: route origins, which name the site that
// injected a route into BGP (RFC 4360 section 5).
//
// The policy text is the AS number or address, ":" and the local number. In front of these,
// strepFormatClassification writes "SoO:" (site of origin), or, together with strepFormatUI,
// "Route-Origin-AS:", "Route-Origin-AS4:" or "Route-Origin-IP:".
#ifndef OVBGP_PARSE_TYPED_EXTCOMMROUTEORIGIN_H
#define OVBGP_PARSE_TYPED_EXTCOMMROUTEORIGIN_H

#include "OvBgp/Parse/Typed/Detail/ExtCommRouteClasses.h"

namespace Routing::Bgp {

// A route origin that starts with a two-octet AS number (type 0x00) or, with the flag, a four-octet
// AS number (type 0x02); subtype 0x03.
EXT_COMM_ROUTE_AS_CLASS(ExtCommRouteOriginAs, extCommRouteOriginAsFactory,
                        extCommClassificationRouteOrigin);

// A route origin that starts with an IPv4 address; type 0x01, subtype 0x03.
EXT_COMM_ROUTE_IPV4_CLASS(ExtCommRouteOriginIpv4Address, extCommRouteOriginIpv4AddressFactory,
                          extCommClassificationRouteOrigin);

}  // namespace Routing::Bgp

#endif
