// Umbrella: lists of communities of all four kinds, their tables, and what OvBgpCommunity.h has.
//
// Start with CommList and CommListDedupTable. commListDedupTableFactory makes a table, and
// CommList::dedupAttributeValue turns the octets of a received attribute into the interned list.
// The other kinds work alike; lists of extended communities also need a table of values.
//
//   kind              list             table of lists             table of values
//   standard          CommList         CommListDedupTable         -
//   large             LargeCommList    LargeCommListDedupTable    -
//   extended          ExtCommList      ExtCommListDedupTable      ExtCommDedupTable
//   IPv6 extended     ExtCommIp6List   ExtCommIp6ListDedupTable   ExtCommIp6DedupTable
//
//   ExtCommClassificationList, ExtCommIp6ClassificationList   sub-lists of extended lists
//   NotifyingRtExtCommListCollection                          the sets of route targets in use
//   ...Snapshot                                               copies that can be edited
//   PerList                                                   a cache of answers, one per list
//   Routing::RouteMap::PosixRegex                             expressions that match lists
//   LargeCommunityFormatter                                   the text of one large community
//
// Lists in a shared-memory store are in OvBgp/Store/StashLists.h and OvBgp/Store/Destash.h, the
// rule tree in OvBgp/Parse/ExtComm.h.
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
