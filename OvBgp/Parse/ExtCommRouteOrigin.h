// Umbrella header for route origins: value classes and plugin.
//
//   ExtCommRouteOriginAs, ExtCommRouteOriginIpv4Address
//   BgpParseExtCommRouteOriginSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommRouteOrigin.h.
#ifndef OVBGP_PARSE_EXTCOMMROUTEORIGIN_H
#define OVBGP_PARSE_EXTCOMMROUTEORIGIN_H

#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"     // IWYU pragma: export

#endif
