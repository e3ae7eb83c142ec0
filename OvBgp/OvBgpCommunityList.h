// Community lists: everything that a user of them needs.
#ifndef OVBGP_OVBGPCOMMUNITYLIST_H
#define OVBGP_OVBGPCOMMUNITYLIST_H

#include "OvBgp/List/CommList.h"                                  // IWYU pragma: export
#include "OvBgp/List/CommListDedupTable.h"                        // IWYU pragma: export
#include "OvBgp/List/ExtCommIp6List.h"                            // IWYU pragma: export
#include "OvBgp/List/ExtCommIp6ListDedupTable.h"                  // IWYU pragma: export
#include "OvBgp/List/ExtCommList.h"                               // IWYU pragma: export
#include "OvBgp/List/ExtCommListDedupTable.h"                     // IWYU pragma: export
#include "OvBgp/List/LargeCommList.h"                             // IWYU pragma: export
#include "OvBgp/List/PerList.h"                                   // IWYU pragma: export
#include "OvBgp/OvBgpCommunity.h"                                 // IWYU pragma: export
#include "OvBgp/OvBgpForwardReference.h"                          // IWYU pragma: export
#include "OvBgp/RouteTarget/NotifyingRtExtCommListCollection.h"   // IWYU pragma: export
#include "OvBgp/RouteTarget/RtExtCommListLifeTimeNotifiee.h"      // IWYU pragma: export
#include "OvBgp/Snapshot/CommListSnapshot.h"                      // IWYU pragma: export
#include "OvBgp/Snapshot/ExtCommClassificationListSnapshot.h"     // IWYU pragma: export
#include "OvBgp/Snapshot/ExtCommIp6ClassificationListSnapshot.h"  // IWYU pragma: export
#include "OvBgp/Snapshot/ExtCommIp6ListSnapshot.h"                // IWYU pragma: export
#include "OvBgp/Snapshot/ExtCommListSnapshot.h"                   // IWYU pragma: export
#include "OvBgp/SubList/ExtCommClassificationList.h"              // IWYU pragma: export
#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"           // IWYU pragma: export
#include "OvBgp/SubList/RtExtCommListLifeTimeNotifier.h"          // IWYU pragma: export
#include "OvBgp/Value/LargeCommunityFormatter.h"                  // IWYU pragma: export
#include "OvBgp/ValueTable/ExtCommIp6DedupTable.h"                // IWYU pragma: export
#include "Routing/RouteMap/CommListSnapshot.h"                    // IWYU pragma: export
#include "Routing/RouteMap/PosixRegex.h"                          // IWYU pragma: export

#endif
