#include "OvBgp/BgpPathAttributeEnums.h"

#include "Kiv/EnumRegistry.h"

namespace Routing::Bgp {
namespace {

const Kiv::EnumModule pathAttributeEnums("BgpPathAttributeEnums",
                                         Kiv::enumInfosOf<BgpPathAttributeEnums>);

}  // namespace

// No default, so that the compiler asks for the text of a new member.
const char* bgpPathAttrTypeShowString(BgpPathAttrType type) noexcept {
  using enum BgpPathAttrType;
  switch (type) {
    case invalidPathAttr:
      return "Invalid Path Attribute";
    case origin:
      return "Origin";
    case asPath:
      return "AS Path";
    case nextHop:
      return "Nexthop";
    case multiExitDisc:
      return "MED";
    case localPref:
      return "Local Preference";
    case atomicAggregate:
      return "Atomic Aggregator";
    case aggregator:
      return "Aggregator";
    case community:
      return "Community";
    case originatorId:
      return "Originator ID";
    case clusterList:
      return "Cluster List";
    case advertiser:
      return "Advertiser";
    case rcidPath:
      return "RCID Path";
    case mpReachNlri:
      return "MP Reach NLRI";
    case mpUnreachNlri:
      return "MP Unreach NLRI";
    case extCommunity:
      return "Extended Community";
    case as4Path:
      return "AS4 Path";
    case as4Aggregator:
      return "AS4 Aggregator";
    case pmsiTunnel:
      return "PMSI Tunnel";
    case tunnelEncapsulation:
      return "Tunnel Encapsulation";
    case extCommunityIp6:
      return "IPv6 Address Specific Extended Community";
    case accumulatedIgpMetric:
      return "Accumulated IGP Metric";
    case bgpLs:
      return "Link State";
    case largeCommunity:
      return "Large Community";
    case domainPath:
      return "Domain Path";
    case prefixSid:
      return "BGP Prefix-SID";
    case attrSet:
      return "Attribute Set";
    case reservedForDevelopment:
      return "Reserved for Development";
    case attrTypeUnknown:
      break;
  }
  return "Invalid attribute";
}

}  // namespace Routing::Bgp
