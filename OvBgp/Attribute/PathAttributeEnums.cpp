#include "OvBgp/Attribute/PathAttributeEnums.h"

#include <array>

#include "Kiv/EnumRegistry.h"

namespace Routing::Bgp {
namespace {

// Enters the enumerations into the registry while the library is loaded.
const Kiv::EnumModule pathAttributeEnums("BgpPathAttributeEnums",
                                         Kiv::enumInfosOf<BgpPathAttributeEnums>);

// One attribute type and its name in show commands.
struct ShowRow {
  BgpPathAttrType type;
  const char* text;
};

// The names are those that operators know from show commands and scripts parse. They differ from
// the members' names, and from those of the RFCs in part ("Atomic Aggregator").
constexpr std::array showRows{
    ShowRow{BgpPathAttrType::invalidPathAttr, "Invalid Path Attribute"},
    ShowRow{BgpPathAttrType::origin, "Origin"},
    ShowRow{BgpPathAttrType::asPath, "AS Path"},
    ShowRow{BgpPathAttrType::nextHop, "Nexthop"},
    ShowRow{BgpPathAttrType::multiExitDisc, "MED"},
    ShowRow{BgpPathAttrType::localPref, "Local Preference"},
    ShowRow{BgpPathAttrType::atomicAggregate, "Atomic Aggregator"},
    ShowRow{BgpPathAttrType::aggregator, "Aggregator"},
    ShowRow{BgpPathAttrType::community, "Community"},
    ShowRow{BgpPathAttrType::originatorId, "Originator ID"},
    ShowRow{BgpPathAttrType::clusterList, "Cluster List"},
    ShowRow{BgpPathAttrType::advertiser, "Advertiser"},
    ShowRow{BgpPathAttrType::rcidPath, "RCID Path"},
    ShowRow{BgpPathAttrType::mpReachNlri, "MP Reach NLRI"},
    ShowRow{BgpPathAttrType::mpUnreachNlri, "MP Unreach NLRI"},
    ShowRow{BgpPathAttrType::extCommunity, "Extended Community"},
    ShowRow{BgpPathAttrType::as4Path, "AS4 Path"},
    ShowRow{BgpPathAttrType::as4Aggregator, "AS4 Aggregator"},
    ShowRow{BgpPathAttrType::pmsiTunnel, "PMSI Tunnel"},
    ShowRow{BgpPathAttrType::tunnelEncapsulation, "Tunnel Encapsulation"},
    ShowRow{BgpPathAttrType::extCommunityIp6, "IPv6 Address Specific Extended Community"},
    ShowRow{BgpPathAttrType::accumulatedIgpMetric, "Accumulated IGP Metric"},
    ShowRow{BgpPathAttrType::bgpLs, "Link State"},
    ShowRow{BgpPathAttrType::largeCommunity, "Large Community"},
    ShowRow{BgpPathAttrType::domainPath, "Domain Path"},
    ShowRow{BgpPathAttrType::prefixSid, "BGP Prefix-SID"},
    ShowRow{BgpPathAttrType::attrSet, "Attribute Set"},
    ShowRow{BgpPathAttrType::reservedForDevelopment, "Reserved for Development"},
};

// All members but attrTypeUnknown, which means "no type", have a text. A new member without one
// does not compile.
static_assert(showRows.size() + 1 == Kiv::enumInfo<BgpPathAttrType>.size());

}  // namespace

// A linear search suffices, since only show commands call this.
const char* bgpPathAttrTypeShowString(BgpPathAttrType type) noexcept {
  for (const ShowRow& row : showRows) {
    if (row.type == type) return row.text;
  }
  return "Invalid attribute";
}

}  // namespace Routing::Bgp
