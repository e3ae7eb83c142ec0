// Umbrella: the prefix of a route target, as BGP advertises it for RFC 4684.
#ifndef OVBGP_ROUTETARGETPREFIX_H
#define OVBGP_ROUTETARGETPREFIX_H

#include "OvBgp/Value/RouteTargetPrefix.h"  // IWYU pragma: export

#endif
