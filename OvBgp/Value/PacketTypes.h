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
#ifndef OVBGP_VALUE_PACKETTYPES_H
#define OVBGP_VALUE_PACKETTYPES_H

#include "BgpCommon/EnumText.h"
#include "Kiv/Assert.h"
#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Attribute/BgpMaybeU63.h"

namespace Routing::Bgp {

// The type octet of an extended community (RFC 4360 section 2, RFC 7153): how its
// other octets are to be read.  The bit 0x40 marks the types that do not leave an
// autonomous system.
#define ENUM_ROWS(enumMember, enumMarker)                      \
  enumMember(extCommPktTypeTransTwoOctetAs, 0x00)              \
  enumMember(extCommPktTypeTransIpv4Address, 0x01)             \
  enumMember(extCommPktTypeTransFourOctetAs, 0x02)             \
  enumMember(extCommPktTypeTransOpaque, 0x03)                  \
  enumMember(extCommPktTypeTransQosMarking, 0x04)              \
  enumMember(extCommPktTypeTransCosCapability, 0x05)           \
  enumMember(extCommPktTypeTransEvpn, 0x06)                    \
  enumMember(extCommPktTypeTransFlowspecRedirectNexthop, 0x08) \
  enumMember(extCommPktTypeTransGeneric, 0x80)                 \
  enumMember(extCommPktTypeTransGenericPart2, 0x81)            \
  enumMember(extCommPktTypeTransGenericPart3, 0x82)            \
  enumMember(extCommPktTypeNonTransTwoOctetAs, 0x40)           \
  enumMember(extCommPktTypeNonTransIpv4Address, 0x41)          \
  enumMember(extCommPktTypeNonTransFourOctetAs, 0x42)          \
  enumMember(extCommPktTypeNonTransOpaque, 0x43)               \
  enumMember(extCommPktTypeNonTransQosMarking, 0x44)           \
  enumMarker(extCommPktTypeUnknown, 256)
KIV_ENUM(BgpExtCommPktType, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktType;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktType, BgpExtCommPktTypeInstance)

// Subtypes of type 0x00, two-octet AS specific (RFC 4360 section 3.1).  The link
// bandwidth stands here as a wildcard for configuration: it is not seen in packets,
// where that subtype belongs to type 0x40, and so it is not valid.
#define ENUM_ROWS(enumMember, enumMarker)                               \
  enumMember(extCommPktSubtypeTransTwoOctetAsRouteTarget, 2)            \
  enumMember(extCommPktSubtypeTransTwoOctetAsRouteOrigin, 3)            \
  enumMember(extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier, 5)   \
  enumMember(extCommPktSubtypeTransTwoOctetAsBgpDataCollection, 8)      \
  enumMember(extCommPktSubtypeTransTwoOctetAsSourceAs, 9)               \
  enumMember(extCommPktSubtypeTransTwoOctetAsL2VpnIdentifier, 10)       \
  enumMember(extCommPktSubtypeTransTwoOctetAsCiscoVpnDistinguisher, 16) \
  enumMarker(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny, 20)   \
  enumMarker(extCommPktSubtypeTransTwoOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransTwoOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransTwoOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransTwoOctetAs,
                           BgpExtCommPktSubtypeTransTwoOctetAsInstance)

// Subtypes of type 0x01, IPv4 address specific (RFC 4360 section 3.2).
#define ENUM_ROWS(enumMember, enumMarker)                                \
  enumMember(extCommPktSubtypeTransIpv4AddressRouteTarget, 2)            \
  enumMember(extCommPktSubtypeTransIpv4AddressRouteOrigin, 3)            \
  enumMember(extCommPktSubtypeTransIpv4AddressOspfDomainIdentifier, 5)   \
  enumMember(extCommPktSubtypeTransIpv4AddressOspfRouteId, 7)            \
  enumMember(extCommPktSubtypeTransIpv4AddressL2VpnIdentifier, 10)       \
  enumMember(extCommPktSubtypeTransIpv4AddressVrfRouteImport, 11)        \
  enumMember(extCommPktSubtypeTransIpv4AddressFlowspecRedirectIp, 12)    \
  enumMember(extCommPktSubtypeTransIpv4AddressCiscoVpnDistinguisher, 16) \
  enumMarker(extCommPktSubtypeTransIpv4AddressUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransIpv4Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransIpv4Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransIpv4Address,
                           BgpExtCommPktSubtypeTransIpv4AddressInstance)

// Subtypes of type 0x02, four-octet AS specific (RFC 5668).
#define ENUM_ROWS(enumMember, enumMarker)                                \
  enumMember(extCommPktSubtypeTransFourOctetAsRouteTarget, 2)            \
  enumMember(extCommPktSubtypeTransFourOctetAsRouteOrigin, 3)            \
  enumMember(extCommPktSubtypeTransFourOctetAsGeneric, 4)                \
  enumMember(extCommPktSubtypeTransFourOctetAsOspfDomainIdentifier, 5)   \
  enumMember(extCommPktSubtypeTransFourOctetAsBgpDataCollection, 8)      \
  enumMember(extCommPktSubtypeTransFourOctetAsSourceAs, 9)               \
  enumMember(extCommPktSubtypeTransFourOctetAsCiscoVpnDistinguisher, 16) \
  enumMarker(extCommPktSubtypeTransFourOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransFourOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransFourOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransFourOctetAs,
                           BgpExtCommPktSubtypeTransFourOctetAsInstance)

// Subtypes of type 0x03, opaque (RFC 4360 section 3.3).  The spelling of the last
// name is the one that configurations hold.
#define ENUM_ROWS(enumMember, enumMarker)                                    \
  enumMember(extCommPktSubtypeTransOpaqueCostCommunity, 1)                   \
  enumMember(extCommPktSubtypeTransOpaqueOutboundRouteFilter, 3)             \
  enumMember(extCommPktSubtypeTransOpaqueOspfRouteType, 6)                   \
  enumMember(extCommPktSubtypeTransOpaqueColorExtendedCommunity, 11)         \
  enumMember(extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity, 12) \
  enumMember(extCommPktSubtypeTransOpaqueDefaultGateway, 13)                 \
  enumMarker(extCommPktSubtypeTransOpaqeUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransOpaque, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransOpaque;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransOpaque, BgpExtCommPktSubtypeTransOpaqueInstance)

// Subtypes of type 0x06, EVPN (RFC 7432 section 7, RFC 8584, RFC 9251).
#define ENUM_ROWS(enumMember, enumMarker)              \
  enumMember(extCommPktSubtypeEvpnMacMobility, 0)      \
  enumMember(extCommPktSubtypeEvpnEsiMplsLabel, 1)     \
  enumMember(extCommPktSubtypeEvpnEsImport, 2)         \
  enumMember(extCommPktSubtypeEvpnRouterMac, 3)        \
  enumMember(extCommPktSubtypeEvpnLayer2Attributes, 4) \
  enumMember(extCommPktSubtypeEvpnEtree, 5)            \
  enumMember(extCommPktSubtypeEvpnDFElection, 6)       \
  enumMember(extCommPktSubtypeEvpnNdFlags, 8)          \
  enumMember(extCommPktSubtypeEvpnMulticastFlags, 9)   \
  enumMember(extCommPktSubtypeEvpnEviRtType0, 10)      \
  enumMember(extCommPktSubtypeEvpnEviRtType1, 11)      \
  enumMember(extCommPktSubtypeEvpnEviRtType2, 12)      \
  enumMarker(extCommPktSubtypeEvpnUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeEvpn, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeEvpn;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeEvpn, BgpExtCommPktSubtypeEvpnInstance)

// Subtypes of type 0x08, flowspec: redirect to the next hop.
#define ENUM_ROWS(enumMember, enumMarker)                 \
  enumMember(extCommPktSubtypeFlowspecRedirectNexthop, 0) \
  enumMarker(extCommPktSubtypeFlowspecRedirectUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransFlowspecRedirectNexthop;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop,
                           BgpExtCommPktSubtypeTransFlowspecRedirectNexthopInstance)

// Subtypes of type 0x80, generic (RFC 8955 section 7, RFC 7153).
#define ENUM_ROWS(enumMember, enumMarker)                                  \
  enumMember(extCommPktSubtypeTransGenericFlowspecTrafficRate, 6)          \
  enumMember(extCommPktSubtypeTransGenericFlowspecTrafficAction, 7)        \
  enumMember(extCommPktSubtypeTransGenericFlowspecRedirectAs2Byte, 8)      \
  enumMember(extCommPktSubtypeTransGenericFlowspecTrafficRemarking, 9)     \
  enumMember(extCommPktSubtypeTransGenericLayer2InfoExtendedCommunity, 10) \
  enumMember(extCommPktSubtypeTransGenericEtreeInfo, 11)                   \
  enumMarker(extCommPktSubtypeTransGenericUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGeneric, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGeneric;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGeneric,
                           BgpExtCommPktSubtypeTransGenericInstance)

// Subtypes of type 0x81, generic part 2 (RFC 8955 section 7.4).
#define ENUM_ROWS(enumMember, enumMarker)                               \
  enumMember(extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4, 8) \
  enumMarker(extCommPktSubtypeTransGenericPart2Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart2, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart2;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart2,
                           BgpExtCommPktSubtypeTransGenericPart2Instance)

// Subtypes of type 0x82, generic part 3 (RFC 8955 section 7.4).
#define ENUM_ROWS(enumMember, enumMarker)                                  \
  enumMember(extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte, 8) \
  enumMarker(extCommPktSubtypeTransGenericPart3Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart3, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart3;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart3,
                           BgpExtCommPktSubtypeTransGenericPart3Instance)

// Subtypes of type 0x40, non-transitive two-octet AS specific (RFC 4360 section
// 3.1).
#define ENUM_ROWS(enumMember, enumMarker)                                      \
  enumMember(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, 4)              \
  enumMember(extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier, 128) \
  enumMarker(extCommPktSubtypeNonTransTwoOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransTwoOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransTwoOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransTwoOctetAs,
                           BgpExtCommPktSubtypeNonTransTwoOctetAsInstance)

// Subtypes of type 0x41, non-transitive IPv4 address specific: none is known.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMarker(extCommPktSubtypeNonTransIpv4AddressUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransIpv4Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransIpv4Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransIpv4Address,
                           BgpExtCommPktSubtypeNonTransIpv4AddressInstance)

// Subtypes of type 0x42, non-transitive four-octet AS specific (RFC 5668).  The
// spelling of the last name is the one that configurations hold.
#define ENUM_ROWS(enumMember, enumMarker)                    \
  enumMember(extCommPktSubtypeNonTransFourOctetAsGeneric, 4) \
  enumMarker(extCommPktSubNonTransFourOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransFourOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransFourOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransFourOctetAs,
                           BgpExtCommPktSubtypeNonTransFourOctetAsInstance)

// Subtypes of type 0x43, non-transitive opaque (RFC 8097).
#define ENUM_ROWS(enumMember, enumMarker)                       \
  enumMember(extCommPktSubtypeNonTransOriginValidationState, 0) \
  enumMember(extCommPktSubtypeNonTransCostCommunity, 1)         \
  enumMarker(extCommPktSubtypeNonTransOpaqueUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransOpaque, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransOpaque;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransOpaque,
                           BgpExtCommPktSubtypeNonTransOpaqueInstance)

// What an extended community is about, whatever its type: lists group by it.  It is
// given by whoever builds the object, not computed from the octets.  The last one
// counts the others and bounds arrays; no community has it.
#define ENUM_ROWS(enumMember, enumMarker)                   \
  enumMember(extCommClassificationUnSpecified, 0)           \
  enumMember(extCommClassificationRouteTarget, 1)           \
  enumMember(extCommClassificationRouteOrigin, 2)           \
  enumMember(extCommClassificationEvpn, 3)                  \
  enumMember(extCommClassificationTunnelEncap, 4)           \
  enumMember(extCommClassificationDefaultGateway, 5)        \
  enumMember(extCommClassificationFlowspec, 6)              \
  enumMember(extCommClassificationLinkBandwidth, 7)         \
  enumMember(extCommClassificationColor, 8)                 \
  enumMember(extCommClassificationOriginValidationState, 9) \
  enumMarker(extCommClassificationOneBeyondLast, 10)
KIV_ENUM(ExtCommClassification, ENUM_ROWS)
#undef ENUM_ROWS
using enum ExtCommClassification;
KIV_ENUM_INSTANCE_BY_VALUE(ExtCommClassification, ExtCommClassificationInstance)
// As communities and sub-lists keep it, in six bits; where that is a bit-field, the
// mask only tells the compiler so.  Rules of one's own may give numbers without a
// name, but none beyond: lists would group them under another.
inline constexpr U8 classificationMask = 0x3F;
inline U8 classificationKept(ExtCommClassification classification) noexcept {
  KIV_ASSERT(static_cast<U32>(classification) < 64, "classification < 64",
             "OvBgp/OvBgpCommunityPacketTypes");
  return static_cast<U8>(classification);
}

// Well-known standard communities (RFC 1997, RFC 8326, RFC 9494), host byte order.
#define ENUM_ROWS(enumMember, enumMarker)            \
  enumMember(communityInternet, 0x00000000)          \
  enumMember(communityNoExport, 0xffffff01)          \
  enumMember(communityNoAdvertise, 0xffffff02)       \
  enumMember(communityNoExportSubconfed, 0xffffff03) \
  enumMember(communityGshut, 0xffff0000)             \
  enumMember(communityLlgrStale, 0xffff0006)         \
  enumMember(communityNoLlgr, 0xffff0007)
KIV_ENUM(BgpCommunityValue, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpCommunityValue;
KIV_ENUM_INSTANCE_BY_VALUE(BgpCommunityValue, BgpCommunityValueInstance)

// The type octet of an IPv6 address specific extended community (RFC 5701).
#define ENUM_ROWS(enumMember, enumMarker)                \
  enumMember(extCommIp6PktTypeTransIpv6Address, 0x00)    \
  enumMember(extCommIp6PktTypeNonTransIpv6Address, 0x40) \
  enumMarker(extCommIp6PktTypeUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktType, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktType;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktType, BgpExtCommIp6PktTypeInstance)

// Subtypes of type 0x00, IPv6 address specific (RFC 5701).
#define ENUM_ROWS(enumMember, enumMarker)                   \
  enumMember(extCommIp6PktSubtypeRouteTarget, 2)            \
  enumMember(extCommIp6PktSubtypeRouteOrigin, 3)            \
  enumMember(extCommIp6PktSubtypeOspf3RouteAttributes, 4)   \
  enumMember(extCommIp6PktSubtypeVrfRouteImport, 11)        \
  enumMember(extCommIp6PktSubtypeFlowspecRedirectIpv6, 12)  \
  enumMember(extCommIp6PktSubtypeCiscoVpnDistinguisher, 16) \
  enumMember(extCommIp6PktSubtypeUuidRouteTarget, 17)       \
  enumMember(extCommIp6PktSubtypeInterAreaP2MPNextHop, 18)  \
  enumMarker(extCommIp6PktSubtypeTransIpv6AddressUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktSubtypeTransIpv6Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktSubtypeTransIpv6Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktSubtypeTransIpv6Address,
                           BgpExtCommIp6PktSubtypeTransIpv6AddressInstance)

// Subtypes of type 0x40, non-transitive IPv6 address specific: none is known.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMarker(extCommIp6PktSubtypeNonTransIpv6AddressUnknown, 256)
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
