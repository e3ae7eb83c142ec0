// The numbers inside extended and standard communities, with their names.
//
// The enumerations of types and subtypes have the octets as values, and one marker "...Unknown"
// with the value 256. In memory the marker replaces an octet that has no name. bgpIsValidEnumMember
// (BgpCommon/EnumText.h) tells octets with a name from others. The names are those of
// configurations and dumps, so misspelled ones stay.
//
// All members can be used without their enumeration in namespace Routing::Bgp. Each enumeration X
// has a function XInstance, which finds a member by value or by name and throws Kiv::RangeException
// if there is none. The functions of Kiv/Enum.h give and read names. The registry of enumerations
// (Kiv/EnumRegistry.h) lists those of this file as module "OvBgpCommunityPacketTypes".
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

// The type octet of an extended community (RFC 4360 section 2, RFC 7153). It says how the other
// octets are read. Bit 0x40 marks the types whose communities do not leave an autonomous system
// ("NonTrans"). Types 0x80 to 0x82 are the generic transitive ones of RFC 7153, which flowspec
// uses.
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

// The subtypes of type 0x00, two-octet AS specific (RFC 4360 section 3.1). Route target and route
// origin are of RFC 4360, the OSPF domain identifier of RFC 4577, data collection of RFC 4384, the
// source AS of RFC 6514, and the L2VPN identifier of RFC 6074; 16 is a vendor's.
//
// The row ...LinkBandwidthAny is a wildcard for configurations. Packets have the link bandwidth
// under type 0x40, so this row is a marker and not valid.
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

// The subtypes of type 0x01, IPv4 address specific (RFC 4360 section 3.2). The OSPF subtypes are of
// RFC 4577, the VRF route import of RFC 6514, and the L2VPN identifier of RFC 6074. Flowspec
// redirection to an address, 12, is of a draft; 16 is a vendor's.
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

// The subtypes of type 0x02, four-octet AS specific (RFC 5668). The numbers mean the same as under
// type 0x00, except for "generic", 4, which is of a draft.
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

// The subtypes of type 0x03, opaque (RFC 4360 section 3.3). The cost community is of a draft, the
// outbound route filter of RFC 7543, and the OSPF route type of RFC 4577; color and encapsulation
// are of RFC 9012, and the default gateway of RFC 7432.
//
// The name of the marker is misspelled
// ("Opaqe"), because existing configurations have it so.
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

// The subtypes of type 0x06, EVPN (RFC 7432 section 7). Later RFCs have added the router's MAC
// address (RFC 9135), layer 2 attributes (RFC 8214), E-Tree (RFC 8317), election of the designated
// forwarder (RFC 8584), ND flags (RFC 9047), multicast flags and EVI route targets (RFC 9251).
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

// The subtypes of type 0x08, flowspec redirect to the next hop. No RFC defines it; the IANA
// registry has it from a draft.
#define ENUM_ROWS(enumMember, enumMarker)                 \
  enumMember(extCommPktSubtypeFlowspecRedirectNexthop, 0) \
  enumMarker(extCommPktSubtypeFlowspecRedirectUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransFlowspecRedirectNexthop;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransFlowspecRedirectNexthop,
                           BgpExtCommPktSubtypeTransFlowspecRedirectNexthopInstance)

// The subtypes of type 0x80, generic (RFC 7153). Flowspec actions are of RFC 8955 section 7, layer
// 2 info of RFC 4761, and E-Tree info of RFC 7796.
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

// The subtypes of type 0x81, generic part 2 (RFC 8955 section 7.4): redirection to a route target
// with an IPv4 address.
#define ENUM_ROWS(enumMember, enumMarker)                               \
  enumMember(extCommPktSubtypeTransGenericPart2FlowspecRedirectIpv4, 8) \
  enumMarker(extCommPktSubtypeTransGenericPart2Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart2, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart2;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart2,
                           BgpExtCommPktSubtypeTransGenericPart2Instance)

// The subtypes of type 0x82, generic part 3 (RFC 8955 section 7.4): redirection to a route target
// with a four-octet AS number.
#define ENUM_ROWS(enumMember, enumMarker)                                  \
  enumMember(extCommPktSubtypeTransGenericPart3FlowspecRedirectAs4Byte, 8) \
  enumMarker(extCommPktSubtypeTransGenericPart3Unknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeTransGenericPart3, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeTransGenericPart3;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeTransGenericPart3,
                           BgpExtCommPktSubtypeTransGenericPart3Instance)

// The subtypes of type 0x40, non-transitive two-octet AS specific (RFC 4360 section 3.1). The link
// bandwidth is a four-octet floating point number of bytes per second, as a draft of the IDR
// working group has it.
#define ENUM_ROWS(enumMember, enumMarker)                                      \
  enumMember(extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, 4)              \
  enumMember(extCommPktSubtypeNonTransTwoOctetAsVirtualNetworkIdentifier, 128) \
  enumMarker(extCommPktSubtypeNonTransTwoOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransTwoOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransTwoOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransTwoOctetAs,
                           BgpExtCommPktSubtypeNonTransTwoOctetAsInstance)

// The subtypes of type 0x41, non-transitive IPv4 address specific. No subtype has a name here.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMarker(extCommPktSubtypeNonTransIpv4AddressUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransIpv4Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransIpv4Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransIpv4Address,
                           BgpExtCommPktSubtypeNonTransIpv4AddressInstance)

// The subtypes of type 0x42, non-transitive four-octet AS specific (RFC 5668). The name of the
// marker breaks the pattern ("PktSub"), because existing configurations have it so.
#define ENUM_ROWS(enumMember, enumMarker)                    \
  enumMember(extCommPktSubtypeNonTransFourOctetAsGeneric, 4) \
  enumMarker(extCommPktSubNonTransFourOctetAsUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransFourOctetAs, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransFourOctetAs;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransFourOctetAs,
                           BgpExtCommPktSubtypeNonTransFourOctetAsInstance)

// The subtypes of type 0x43, non-transitive opaque (RFC 4360 section 3.3). Subtype 0 is the origin
// validation state of RFC 8097.
#define ENUM_ROWS(enumMember, enumMarker)                       \
  enumMember(extCommPktSubtypeNonTransOriginValidationState, 0) \
  enumMember(extCommPktSubtypeNonTransCostCommunity, 1)         \
  enumMarker(extCommPktSubtypeNonTransOpaqueUnknown, 256)
KIV_ENUM(BgpExtCommPktSubtypeNonTransOpaque, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommPktSubtypeNonTransOpaque;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommPktSubtypeNonTransOpaque,
                           BgpExtCommPktSubtypeNonTransOpaqueInstance)

// The subject of an extended community, whatever its type. Lists group their members by it. The
// code that builds a community, in general a rule of the rule tree, chooses the classification; it
// is not computed from the octets. The marker is the number of classifications and bounds arrays;
// no community has it.
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
// The six bits in which communities and sub-lists keep a classification. classificationKept has
// checked the number already; masking it again only tells the compiler that it fits the bit-field.
inline constexpr U8 classificationMask = 0x3F;
// Whether a community can have this number as its classification: 0 to 63, but not the bound 10.
// The numbers 11 to 63 have no name and are free for rules of a user's own.
constexpr bool isClassification(U32 number) noexcept {
  return number <= classificationMask &&
         number != Kiv::enumValue(extCommClassificationOneBeyondLast);
}
// The classification as it is kept. A number for which isClassification is false stops the process.
// The bound is the classification of no community, and a number above 63, cut to six bits, would be
// another classification.
inline U8 classificationKept(ExtCommClassification classification) noexcept {
  const U32 number = Kiv::enumValue(classification);
  KIV_ASSERT(number <= classificationMask, "classification < 64",
             "OvBgp/OvBgpCommunityPacketTypes");
  KIV_ASSERT(isClassification(number), "classification != extCommClassificationOneBeyondLast",
             "OvBgp/OvBgpCommunityPacketTypes");
  return static_cast<U8>(number);
}

// Well-known standard communities in host byte order: RFC 1997, RFC 8326 (graceful shutdown) and
// RFC 9494 (long-lived graceful restart). communityInternet, 0, is in no RFC; vendors use it for
// "all routes".
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

// The type octet of an IPv6 address specific extended community (RFC 5701 section 2).
#define ENUM_ROWS(enumMember, enumMarker)                \
  enumMember(extCommIp6PktTypeTransIpv6Address, 0x00)    \
  enumMember(extCommIp6PktTypeNonTransIpv6Address, 0x40) \
  enumMarker(extCommIp6PktTypeUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktType, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktType;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktType, BgpExtCommIp6PktTypeInstance)

// The subtypes of type 0x00, IPv6 address specific. Route target and route origin are of RFC 5701,
// the VRF route import of RFC 6515, OSPFv3 route attributes of RFC 6565, and the next hop of P2MP
// trees between areas of RFC 7524. The others are of drafts or a vendor's.
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

// The subtypes of type 0x40, non-transitive IPv6 address specific. No subtype has a name here.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMarker(extCommIp6PktSubtypeNonTransIpv6AddressUnknown, 256)
KIV_ENUM(BgpExtCommIp6PktSubtypeNonTransIpv6Address, ENUM_ROWS)
#undef ENUM_ROWS
using enum BgpExtCommIp6PktSubtypeNonTransIpv6Address;
KIV_ENUM_INSTANCE_BY_VALUE(BgpExtCommIp6PktSubtypeNonTransIpv6Address,
                           BgpExtCommIp6PktSubtypeNonTransIpv6AddressInstance)

// All enumerations of this file, in the order of the registry.
using BgpPacketEnums = Kiv::EnumList<
    BgpExtCommPktType, BgpExtCommPktSubtypeTransTwoOctetAs, BgpExtCommPktSubtypeTransIpv4Address,
    BgpExtCommPktSubtypeTransFourOctetAs, BgpExtCommPktSubtypeTransOpaque, BgpExtCommPktSubtypeEvpn,
    BgpExtCommPktSubtypeTransFlowspecRedirectNexthop, BgpExtCommPktSubtypeTransGeneric,
    BgpExtCommPktSubtypeTransGenericPart2, BgpExtCommPktSubtypeTransGenericPart3,
    BgpExtCommPktSubtypeNonTransTwoOctetAs, BgpExtCommPktSubtypeNonTransIpv4Address,
    BgpExtCommPktSubtypeNonTransFourOctetAs, BgpExtCommPktSubtypeNonTransOpaque,
    ExtCommClassification, BgpCommunityValue, BgpExtCommIp6PktType,
    BgpExtCommIp6PktSubtypeTransIpv6Address, BgpExtCommIp6PktSubtypeNonTransIpv6Address>;

// The subtype octet of an extended community, with a name or without one; unspecified if the class
// of the community has no subtypes. A plain value; owner thread only.
class OV_EXPORT BgpExtCommPktSubtype final : public BgpMaybeU63 {
 public:
  // An unspecified subtype.
  BgpExtCommPktSubtype() = default;
  // The given subtype. Throws Kiv::RangeException if the number is above 255, unless bit 63 is set,
  // which means "unspecified".
  explicit BgpExtCommPktSubtype(U64 word) : BgpMaybeU63(word, Unchecked{}) { checkValue(); }

  // The smallest octet, 0.
  U64 min() const override;
  // The largest octet, 255.
  U64 max() const override;
};

}  // namespace Routing::Bgp

#endif
