// Umbrella: extended communities of eight octets as values.
//
// Start with ExtComm (OvBgp/Value/ExtComm.h), the interned object, and ExtComm::dedupContent, by
// which a program gets one. That call needs an ExtCommContent, which is the eight octets as a
// number, and an ExtCommDedupTable, which extCommDedupTableFactory makes for a rule tree.
//
//   ExtComm, ExtCommSubtyped, ExtCommAsNumber, ExtCommIpv4Address   objects and base classes
//   ExtCommContent                                                  the eight octets
//   ExtCommDedupTable, NotifyingRouteTargetList                     the table, its route targets
//   BgpExtCommPktType, ExtCommClassification, ...                   numbers with names
//   addExtCommTypeAsString, ExtCommTextBuffer, ...                  pieces of texts
//
// The rule tree is made by OvBgp/Parse/ExtComm.h, which also has the typed classes (colors, link
// bandwidths, ...); here is only its root, which the table refers to. IPv6 communities are in
// OvBgp/ExtCommIp6.h, lists in OvBgp/OvBgpCommunityList.h.
#ifndef OVBGP_OVBGPCOMMUNITY_H
#define OVBGP_OVBGPCOMMUNITY_H

#include "OvBgp/OvBgpForwardReference.h"                     // IWYU pragma: export
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"  // IWYU pragma: export
#include "OvBgp/Value/ExtComm.h"                             // IWYU pragma: export
#include "OvBgp/Value/ExtCommAsNumber.h"                     // IWYU pragma: export
#include "OvBgp/Value/ExtCommContent.h"                      // IWYU pragma: export
#include "OvBgp/Value/ExtCommIpv4Address.h"                  // IWYU pragma: export
#include "OvBgp/Value/ExtCommText.h"                         // IWYU pragma: export
#include "OvBgp/Value/PacketTypes.h"                         // IWYU pragma: export
#include "OvBgp/ValueTable/ExtCommDedupTable.h"              // IWYU pragma: export

#endif
