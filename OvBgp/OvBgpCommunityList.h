// Community lists: everything that a user of them needs.
#ifndef OVBGP_OVBGPCOMMUNITYLIST_H
#define OVBGP_OVBGPCOMMUNITYLIST_H

#include "OvBgp/CommList.h"                              // IWYU pragma: export
#include "OvBgp/CommListDedupTable.h"                    // IWYU pragma: export
#include "OvBgp/CommListSnapshot.h"                      // IWYU pragma: export
#include "OvBgp/ExtCommClassificationList.h"             // IWYU pragma: export
#include "OvBgp/ExtCommClassificationListSnapshot.h"     // IWYU pragma: export
#include "OvBgp/ExtCommIp6ClassificationList.h"          // IWYU pragma: export
#include "OvBgp/ExtCommIp6ClassificationListSnapshot.h"  // IWYU pragma: export
#include "OvBgp/ExtCommIp6List.h"                        // IWYU pragma: export
#include "OvBgp/ExtCommIp6ListDedupTable.h"              // IWYU pragma: export
#include "OvBgp/ExtCommIp6ListSnapshot.h"                // IWYU pragma: export
#include "OvBgp/ExtCommList.h"                           // IWYU pragma: export
#include "OvBgp/ExtCommListDedupTable.h"                 // IWYU pragma: export
#include "OvBgp/ExtCommListSnapshot.h"                   // IWYU pragma: export
#include "OvBgp/LargeCommList.h"                         // IWYU pragma: export
#include "OvBgp/LargeCommunityFormatter.h"               // IWYU pragma: export
#include "OvBgp/NotifyingRtExtCommListCollection.h"      // IWYU pragma: export
#include "OvBgp/OvBgpForwardReference.h"                 // IWYU pragma: export
#include "OvBgp/RtExtCommListLifeTimeNotifiee.h"         // IWYU pragma: export
#include "OvBgp/RtExtCommListLifeTimeNotifier.h"         // IWYU pragma: export
#include "Routing/RouteMap/CommListSnapshot.h"           // IWYU pragma: export

#endif
