// Forward declarations of the library's shared classes, for headers that only name them.
//
// A counted pointer to a class that is only declared can be declared, but neither copied nor
// destroyed; the source file then includes the class's own header.
#ifndef OVBGP_OVBGPFORWARDREFERENCE_H
#define OVBGP_OVBGPFORWARDREFERENCE_H

namespace Routing::Bgp {

// Lists, sub-lists and their tables.
class CommList;
class CommListDedupTable;
class CommListDedupTableBase;
class ExtCommClassificationList;
class ExtCommIp6ClassificationList;
class ExtCommIp6List;
class ExtCommList;
class LargeCommList;
class LargeCommListDedupTable;
class LinkBandwidthExtCommClassificationList;
class RtExtCommClassificationList;

// Interned extended communities and their tables.
class ExtComm;
class ExtCommDedupTable;
class ExtCommIp6;
class ExtCommIp6DedupTable;
class ExtCommIp6Subtyped;
class ExtCommSubtyped;

// The rule tree and the observers of route targets.
class BgpParseExtCommRuleCollections;
class BgpParseExtendedCommunityRule;
class NotifyingRouteTargetList;
class NotifyingRtExtCommListCollection;
class RtExtCommListLifeTimeNotifiee;
class RtExtCommListLifeTimeNotifier;

// Copies of lists that can be edited, and two more tables.
class CommListSnapshot;
class ExtCommClassificationListSnapshot;
class ExtCommIp6ClassificationListSnapshot;
class ExtCommIp6ListDedupTable;
class ExtCommIp6ListSnapshot;
class ExtCommListDedupTable;
class ExtCommListSnapshot;

}  // namespace Routing::Bgp

#endif
