// Forward declarations of the library's shared classes.
#ifndef OVBGP_OVBGPFORWARDREFERENCE_H
#define OVBGP_OVBGPFORWARDREFERENCE_H

namespace Routing::Bgp {

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

class ExtComm;
class ExtCommDedupTable;
class ExtCommIp6;
class ExtCommIp6DedupTable;
class ExtCommIp6Subtyped;
class ExtCommSubtyped;

class BgpParseExtCommRuleCollections;
class BgpParseExtendedCommunityRule;
class NotifyingRouteTargetList;
class NotifyingRtExtCommListCollection;
class RtExtCommListLifeTimeNotifiee;
class RtExtCommListLifeTimeNotifier;

class CommListSnapshot;
class ExtCommClassificationListSnapshot;
class ExtCommIp6ClassificationListSnapshot;
class ExtCommIp6ListDedupTable;
class ExtCommIp6ListSnapshot;
class ExtCommListDedupTable;
class ExtCommListSnapshot;

}  // namespace Routing::Bgp

#endif
