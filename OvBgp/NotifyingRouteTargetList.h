// The observed set of route targets.
#ifndef OVBGP_NOTIFYINGROUTETARGETLIST_H
#define OVBGP_NOTIFYINGROUTETARGETLIST_H

#include "OvBgp/RouteTarget/NotifyingRouteTargetList.h"  // IWYU pragma: export

#endif
