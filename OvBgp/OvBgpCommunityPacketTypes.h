// The numbers that stand in extended and standard communities, with their names.
//
// Type and subtype enumerations are as wide as an octet and hold one more member,
// "Unknown", just outside that range: it stands in memory for an octet that has no
// name.  bgpIsValidEnumMember tells octets that have one.  The names are what
// configurations and dumps spell, oddities included.
//
// All members can be used unqualified in this namespace.  Each enumeration has an
// instance function by value and by name; both throw Kiv::RangeException if there
// is no such member.  Names, readers and stream output: Kiv/Enum.h.
#ifndef OVBGP_OVBGPCOMMUNITYPACKETTYPES_H
#define OVBGP_OVBGPCOMMUNITYPACKETTYPES_H

#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/EnumText.h"
#include "OvBgp/OvBgpMiscTypes.h"

namespace Routing::Bgp {

// The type octet of an extended community (RFC 4360 section 2, RFC 7153): how its
// other octets are to be read.  The bit 0x40 marks the types that do not leave an
// autonomous system.
#define ENUM_ROWS(member, marker)                          \
  member(extCommPktTypeTransTwoOctetAs, 0x00)              \
  member(extCommPktTypeTransIpv4Address, 0x01)             \
  member(extCommPktTypeTransFourOctetAs, 0x02)             \
  member(extCommPktTypeTransOpaque, 0x03)                  \
  member(extCommPktTypeTransQosMarking, 0x04)              \
  member(extCommPktTypeTransCosCapability, 0x05)           \
  member(extCommPktTypeTransEvpn, 0x06)                    \
  member(extCommPktTypeTransFlowspecRedirectNexthop, 0x08) \
  member(extCommPktTypeTransGeneric, 0x80)                 \
  member(extCommPktTypeTransGenericPart2, 0x81)            \
  member(extCommPktTypeTransGenericPart3, 0x82)            \
  member(extCommPktTypeNonTransTwoOctetAs, 0x40)           \
  member(extCommPktTypeNonTransIpv4Address, 0x41)          \
  member(extCommPktTypeNonTransFourOctetAs, 0x42)          \
  member(extCommPktTypeNonTransOpaque, 0x43)               \
  member(extCommPktTypeNonTransQosMarking, 0x44)           \
  marker(extCommPktTypeUnknown, 256)
KIV_ENUM(BgpExtCommPktType, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktType;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktType, BgpExtCommPktTypeInstance)

// Subtypes of type 0x00, two-octet AS specific (RFC 4360 section 3.1).  The link
// bandwidth stands here as a wildcard for configuration: it is not seen in packets,
// where that subtype belongs to type 0x40, and so it is not valid.
#define ENUM_ROWS(member, marker)                                   \
  member(extCommPktSubtypeTransTwoOctetAsRouteTarget, 2)            \
  member(extCommPktSubtypeTransTwoOctetAsRouteOrigin, 3)            \
  member(extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier, 5)   \
  member(extCommPktSubtypeTransTwoOctetAsBgpDataCollection, 8)      \
  member(extCommPktSubtypeTransTwoOctetAsSourceAs, 9)               \
  member(extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier, 10)       \
  member(extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher, 16) \
  marker(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny, 20)   \
  marker(extCommPktSubtypeTransTwoOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransTwoOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransTwoOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransTwoOctetAs,
                           BgpExtCommPktSubtypeTransTwoOctetAsInstance)

// Subtypes of type 0x01, IPv4 address specific (RFC 4360 section 3.2).
#define ENUM_ROWS(member, marker)                                    \
  member(extCommPktSubtypeTransIpv4AddressRouteTarget, 2)            \
  member(extCommPktSubtypeTransIpv4AddressRouteOrigin, 3)            \
  member(extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier, 5)   \
  member(extCommPktSubtypeTransIpv4AddressOspfRouteId, 7)            \
  member(extCommPktSubtypeTransIpv4AddressL2VpnIdentifier, 10)       \
  member(extCommPktSubtypeTransIpv4AddressVrfRouteImport, 11)        \
  member(extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp, 12)    \
  member(extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher, 16) \
  marker(extCommPktSubtypeTransIpv4AddressUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransIpv4Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransIpv4Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransIpv4Address,
                           BgpExtCommPktSubtypeTransIpv4AddressInstance)

// Subtypes of type 0x02, four-octet AS specific (RFC 5668).
#define ENUM_ROWS(member, marker)                                    \
  member(extCommPktSubtypeTransFourOctetAsRouteTarget, 2)            \
  member(extCommPktSubtypeTransFourOctetAsRouteOrigin, 3)            \
  member(extCommPktSubtypeTransFourOctetAsGeneric, 4)                \
  member(extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier, 5)   \
  member(extCommPktSubtypeTransFourOctetAsBgpDataCollection, 8)      \
  member(extCommPktSubtypeTransFourOctetAsSourceAs, 9)               \
  member(extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher, 16) \
  marker(extCommPktSubtypeTransFourOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransFourOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransFourOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransFourOctetAs,
                           BgpExtCommPktSubtypeTransFourOctetAsInstance)

// Subtypes of type 0x03, opaque (RFC 4360 section 3.3).  The spelling of the last
// name is the one that configurations hold.
#define ENUM_ROWS(member, marker)                                        \
  member(extCommPktSubtypeTransOpaqueCostCommunity, 1)                   \
  member(extCommPktSubtypeTransOpaqueOutboundRouteFilter, 3)             \
  member(extCommPktSubtypeTransOpaqueOspfRouteType, 6)                   \
  member(extCommPktSubtypeTransOpaqueColorExtendedCommunity, 11)         \
  member(extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, 12) \
  member(extCommPktSubtypeTransOpaqueDefaultGateway, 13)                 \
  marker(extCommPktSubtypeTransOpaqeUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransOpaque, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransOpaque;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransOpaque, BgpExtCommPktSubtypeTransOpaqueInstance)

// Subtypes of type 0x06, EVPN (RFC 7432 section 7, RFC 8584, RFC 9251).
#define ENUM_ROWS(member, marker)                  \
  member(extCommPktSubtypeEvpnMacMobility, 0)      \
  member(extCommPktSubtypeEvpnEsiMplsLabel, 1)     \
  member(extCommPktSubtypeEvpnEsImport, 2)         \
  member(extCommPktSubtypeEvpnRouterMac, 3)        \
  member(extCommPktSubtypeEvpnLayer2Attributes, 4) \
  member(extCommPktSubtypeEvpnEtree, 5)            \
  member(extCommPktSubtypeEvpnDFElection, 6)       \
  member(extCommPktSubtypeEvpnNdFlags, 8)          \
  member(extCommPktSubtypeEvpnMulticastFlags, 9)   \
  member(extCommPktSubtypeEvpnEviRtType0, 10)      \
  member(extCommPktSubtypeEvpnEviRtType1, 11)      \
  member(extCommPktSubtypeEvpnEviRtType2, 12)      \
  marker(extCommPktSubtypeEvpnUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeEvpn, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeEvpn;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeEvpn, BgpExtCommPktSubtypeEvpnInstance)

// Subtypes of type 0x08, flow specification: redirect to the next hop.
#define ENUM_ROWS(member, marker)                     \
  member(extCommPktSubtypeFlowspecRedirectNexthop, 0) \
  marker(extCommPktSubtypeFlowspecRedirectUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransFlowspecRedirectNexthop;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop,
                           BgpExtCommPktSubtypeTransFlowspecRedirectNexthopInstance)

// Subtypes of type 0x80, generic (RFC 8955 section 7, RFC 7153).
#define ENUM_ROWS(member, marker)                                      \
  member(extCommPktSubtypeTransGenericFlowspecTrafficRate, 6)          \
  member(extCommPktSubtypeTransGenericFlowspecTrafficAction, 7)        \
  member(extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte, 8)      \
  member(extCommPktSubtypeTransGenericFlowspecTrafficRemarking, 9)     \
  member(extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity, 10) \
  member(extCommPktSubtypeTransGenericEtreeInfo, 11)                   \
  marker(extCommPktSubtypeTransGenericUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGeneric, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGeneric;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGeneric,
                           BgpExtCommPktSubtypeTransGenericInstance)

// Subtypes of type 0x81, generic part 2 (RFC 8955 section 7.4).
#define ENUM_ROWS(member, marker)                                   \
  member(extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4, 8) \
  marker(extCommPktSubtypeTransGenericPart2Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart2, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart2;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart2,
                           BgpExtCommPktSubtypeTransGenericPart2Instance)

// Subtypes of type 0x82, generic part 3 (RFC 8955 section 7.4).
#define ENUM_ROWS(member, marker)                                      \
  member(extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte, 8) \
  marker(extCommPktSubtypeTransGenericPart3Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart3, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart3;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart3,
                           BgpExtCommPktSubtypeTransGenericPart3Instance)

// Subtypes of type 0x40, non-transitive two-octet AS specific (RFC 4360 section
// 3.1).
#define ENUM_ROWS(member, marker)                                          \
  member(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, 4)              \
  member(extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier, 128) \
  marker(extCommPktSubtypeNonTransTwoOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransTwoOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransTwoOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransTwoOctetAs,
                           BgpExtCommPktSubtypeNonTransTwoOctetAsInstance)

// Subtypes of type 0x41, non-transitive IPv4 address specific: none is known.
#define ENUM_ROWS(member, marker) marker(extCommPktSubtypeNonTransIpv4AddressUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransIpv4Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransIpv4Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransIpv4Address,
                           BgpExtCommPktSubtypeNonTransIpv4AddressInstance)

// Subtypes of type 0x42, non-transitive four-octet AS specific (RFC 5668).  The
// spelling of the last name is the one that configurations hold.
#define ENUM_ROWS(member, marker)                        \
  member(extCommPktSubtypeNonTransFourOctetAsGeneric, 4) \
  marker(extCommPktSubNonTransFourOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransFourOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransFourOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransFourOctetAs,
                           BgpExtCommPktSubtypeNonTransFourOctetAsInstance)

// Subtypes of type 0x43, non-transitive opaque (RFC 8097).
#define ENUM_ROWS(member, marker)                           \
  member(extCommPktSubtypeNonTransOriginValidationState, 0) \
  member(extCommPktSubtypeNonTransCostCommunity, 1)         \
  marker(extCommPktSubtypeNonTransOpaqueUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransOpaque, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransOpaque;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransOpaque,
                           BgpExtCommPktSubtypeNonTransOpaqueInstance)

// What an extended community is about, whatever its type: lists group by it.  It is
// given by whoever builds the object, not computed from the octets.  The last one
// counts the others and bounds arrays; no community has it.
#define ENUM_ROWS(member, marker)                       \
  member(extCommClassificationUnSpecified, 0)           \
  member(extCommClassificationRouteTarget, 1)           \
  member(extCommClassificationRouteOrigin, 2)           \
  member(extCommClassificationEvpn, 3)                  \
  member(extCommClassificationTunnelEncap, 4)           \
  member(extCommClassificationDefaultGateway, 5)        \
  member(extCommClassificationFlowspec, 6)              \
  member(extCommClassificationLinkBandwidth, 7)         \
  member(extCommClassificationColor, 8)                 \
  member(extCommClassificationOriginValidationState, 9) \
  marker(extCommClassificationOneBeyondLast, 10)
KIV_ENUM(ExtCommClassification, ENUM_ROWS)
#undef ENUM_ROWS
using enum ExtCommClassification;
KIV_ENUM_INSTANCE_BY_VALUE(ExtCommClassification, ExtCommClassificationInstance)

// Well-known standard communities (RFC 1997, RFC 8326, RFC 9494), host byte order.
#define ENUM_ROWS(member, marker)                \
  member(communityInternet, 0x00000000)          \
  member(communityNoExport, 0xffffff01)          \
  member(communityNoAdvertise, 0xffffff02)       \
  member(communityNoExportSubconfed, 0xffffff03) \
  member(communityGshut, 0xffff0000)             \
  member(communityLlgrStale, 0xffff0006)         \
  member(communityNoLlgr, 0xffff0007)
KIV_ENUM(BgpCommunityValue, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpCommunityValue;
KIV_ENUM_INSTANCE_BY_VALUE(BgpCommunityValue, BgpCommunityValueInstance)

// The type octet of an IPv6 address specific extended community (RFC 5701).
#define ENUM_ROWS(member, marker)                    \
  member(extCommIp6PktTypeTransIpv6Address, 0x00)    \
  member(extCommIp6PktTypeNonTransIpv6Address, 0x40) \
  marker(extCommIp6PktTypeUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktType, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktType;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktType, BgpExtCommIp6PktTypeInstance)

// Subtypes of type 0x00, IPv6 address specific (RFC 5701).
#define ENUM_ROWS(member, marker)                       \
  member(extCommIp6PktSubtypeRouteTarget, 2)            \
  member(extCommIp6PktSubtypeRouteOrigin, 3)            \
  member(extCommIp6PktSubtypeOspf3RouteAttributes, 4)   \
  member(extCommIp6PktSubtypeVrfRouteImport, 11)        \
  member(extCommIp6PktSubtypeFlowspecRedirectIpv6, 12)  \
  member(extCommIp6PktSubtypeCiscoVpnDistinguisher, 16) \
  member(extCommIp6PktSubtypeUuidRouteTarget, 17)       \
  member(extCommIp6PktSubtypeInterAreaP2MPNextHop, 18)  \
  marker(extCommIp6PktSubtypeTransIpv6AddressUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktSubtypeTransIpv6Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktSubtypeTransIpv6Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktSubtypeTransIpv6Address,
                           BgpExtCommIp6PktSubtypeTransIpv6AddressInstance)

// Subtypes of type 0x40, non-transitive IPv6 address specific: none is known.
#define ENUM_ROWS(member, marker) marker(extCommIp6PktSubtypeNonTransIpv6AddressUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktSubtypeNonTransIpv6Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktSubtypeNonTransIpv6Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktSubtypeNonTransIpv6Address,
                           BgpExtCommIp6PktSubtypeNonTransIpv6AddressInstance)

// All of the above.
using BgpPacketEnums = Kiv::EnumList<
    BgpExtCommPktType, BgpExtCommPktSubtypeTransTwoOctetAs, BgpExtCommPktSubtypeTransIpv4Address,
    BgpExtCommPktSubtypeTransFourOctetAs, BgpExtCommPktSubtypeTransOpaque, BgpExtCommPktSubtypeEvpn,
    BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, BgpExtCommPktSubtypeTransGeneric,
    BgpExtCommPktSubtypeTransGenericPart2, BgpExtCommPktSubtypeTransGenericPart3,
    BgpExtCommPktSubtypeNonTransTwoOctetAs, BgpExtCommPktSubtypeNonTransIpv4Address,
    BgpExtCommPktSubtypeNonTransFourOctetAs, BgpExtCommPktSubtypeNonTransOpaque,
    ExtCommClassification, BgpCommunityValue, BgpExtCommIp6PktType,
    BgpExtCommIp6PktSubtypeTransIpv6Address, BgpExtCommIp6PktSubtypeNonTransIpv6Address>;

// The subtype octet of an extended community, whether or not it has a name;
// unspecified if the community's type has no subtypes.
class OV_EXPORT BgpExtCommPktSubtype final : public BgpMaybeU63 {
 public:
  BgpExtCommPktSubtype() = default;  // unspecified
  // Throws Kiv::RangeException if the number is no octet.
  explicit BgpExtCommPktSubtype(U64 word) : BgpMaybeU63(word, Unchecked{}) { checkValue(); }

  U64 min() const override;
  U64 max() const override;
};

}  // namespace Routing::Bgp

#endif
