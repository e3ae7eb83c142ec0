// Umbrella header for route targets: value classes and plugin.
//
//   ExtCommRouteTargetAs, ExtCommRouteTargetIpv4Address
//   BgpParseExtCommRouteTargetSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommRouteTarget.h.
#ifndef OVBGP_PARSE_EXTCOMMROUTETARGET_H
#define OVBGP_PARSE_EXTCOMMROUTETARGET_H

#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"     // IWYU pragma: export

#endif
