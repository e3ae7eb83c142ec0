// Umbrella header for tunnel encapsulations: value class and plugin.
//
//   ExtCommTunnelEncap
//   BgpParseExtCommTunnelEncapSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommTunnelEncap.h.
#ifndef OVBGP_PARSE_EXTCOMMTUNNELENCAP_H
#define OVBGP_PARSE_EXTCOMMTUNNELENCAP_H

#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"     // IWYU pragma: export

#endif
