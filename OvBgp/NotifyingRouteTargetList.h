// Umbrella: the set of route targets that notifies observers, as an ExtCommDedupTable keeps one.
#ifndef OVBGP_NOTIFYINGROUTETARGETLIST_H
#define OVBGP_NOTIFYINGROUTETARGETLIST_H

#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"  // IWYU pragma: export

#endif
