// Forward declarations of the library's shared classes.
#ifndef OVBGP_OVBGPFORWARDREFERENCE_H
#define OVBGP_OVBGPFORWARDREFERENCE_H

namespace Routing::Bgp {

class CommList;
class CommListDedupTable;
class CommListDedupTableBase;

class ExtComm;
class ExtCommDedupTable;
class ExtCommIp6;
class ExtCommIp6DedupTable;
class ExtCommIp6Subtyped;
class ExtCommSubtyped;

class BgpParseExtCommRuleCollections;
class BgpParseExtendedCommunityRule;
class NotifyingRouteTargetList;

}  // namespace Routing::Bgp

#endif
