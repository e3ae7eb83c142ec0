// Umbrella header for link bandwidths: value class and plugin.
//
//   ExtCommLinkBandwidth
//   BgpParseExtCommLinkBandwidthSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommLinkBandwidth.h.
#ifndef OVBGP_PARSE_EXTCOMMLINKBANDWIDTH_H
#define OVBGP_PARSE_EXTCOMMLINKBANDWIDTH_H

#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"     // IWYU pragma: export

#endif
