// Umbrella header for default gateways: value class and plugin.
//
//   ExtCommDefaultGateway
//   BgpParseExtCommDefaultGatewaySm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommDefaultGateway.h.
#ifndef OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H
#define OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H

#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"     // IWYU pragma: export

#endif
