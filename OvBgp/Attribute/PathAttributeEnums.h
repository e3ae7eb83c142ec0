// The vocabulary of BGP path attributes: types, flags, and values inside them.
//
// Members are written with their enumeration (OriginCode::originIgp), because names such as
// `community` are too common to be visible in the whole namespace.
//
// Each enumeration has a function XInstance, which finds a member by its name, or by its position
// in ascending value order, from 0. It throws Kiv::RangeException if there is no such member. The
// functions of Kiv/Enum.h give and read names. The registry of enumerations (Kiv/EnumRegistry.h)
// lists those of this file as module "BgpPathAttributeEnums".
#ifndef OVBGP_ATTRIBUTE_PATHATTRIBUTEENUMS_H
#define OVBGP_ATTRIBUTE_PATHATTRIBUTEENUMS_H

#include "BgpCommon/EnumText.h"
#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// The type octet of a path attribute (RFC 4271 section 5 and the IANA registry "BGP Path
// Attributes"). Type 0 is reserved, and so is no attribute; numbers that are absent are not
// assigned or not known here. Beyond RFC 4271, the types are of these RFCs:
//
//   community                          RFC 1997       originatorId, clusterList   RFC 4456
//   advertiser, rcidPath               RFC 1863       mpReachNlri, mpUnreachNlri  RFC 4760
//   extCommunity                       RFC 4360       as4Path, as4Aggregator      RFC 6793
//   pmsiTunnel                         RFC 6514       tunnelEncapsulation         RFC 9012
//   extCommunityIp6                    RFC 5701       accumulatedIgpMetric        RFC 7311
//   bgpLs                              RFC 9552       largeCommunity              RFC 8092
//   domainPath                         a draft        prefixSid                   RFC 8669
//   attrSet                            RFC 6368       reservedForDevelopment      RFC 2042
//
// attrTypeUnknown is outside the octet on purpose. In memory it means "no type", and
// serializing it stops the process.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(invalidPathAttr, 0)          \
  enumMember(origin, 1)                   \
  enumMember(asPath, 2)                   \
  enumMember(nextHop, 3)                  \
  enumMember(multiExitDisc, 4)            \
  enumMember(localPref, 5)                \
  enumMember(atomicAggregate, 6)          \
  enumMember(aggregator, 7)               \
  enumMember(community, 8)                \
  enumMember(originatorId, 9)             \
  enumMember(clusterList, 10)             \
  enumMember(advertiser, 12)              \
  enumMember(rcidPath, 13)                \
  enumMember(mpReachNlri, 14)             \
  enumMember(mpUnreachNlri, 15)           \
  enumMember(extCommunity, 16)            \
  enumMember(as4Path, 17)                 \
  enumMember(as4Aggregator, 18)           \
  enumMember(pmsiTunnel, 22)              \
  enumMember(tunnelEncapsulation, 23)     \
  enumMember(extCommunityIp6, 25)         \
  enumMember(accumulatedIgpMetric, 26)    \
  enumMember(bgpLs, 29)                   \
  enumMember(largeCommunity, 32)          \
  enumMember(domainPath, 36)              \
  enumMember(prefixSid, 40)               \
  enumMember(attrSet, 128)                \
  enumMember(reservedForDevelopment, 255) \
  enumMarker(attrTypeUnknown, 256)
KIV_ENUM(BgpPathAttrType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(BgpPathAttrType, BgpPathAttrTypeInstance)

// The flags octet of a path attribute (RFC 4271 section 4.3). The first four members are its bits:
// a length field of two octets, partial, transitive, and optional. The last two are combinations
// that have a name of their own. The rows ascend, because positions count in ascending order.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(extLen, 0x10)                \
  enumMember(partial, 0x20)               \
  enumMember(transitive, 0x40)            \
  enumMember(opt, 0x80)                   \
  enumMember(optionalTransitive, 0xc0)    \
  enumMember(optionalTransitivePartial, 0xe0)
KIV_ENUM(BgpPathAttrFlag, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(BgpPathAttrFlag, BgpPathAttrFlagInstance)

// The value of an ORIGIN attribute (RFC 4271 section 5.1.1). originUnknown is outside the octet and
// means in memory that there is no value.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(originIgp, 0)                \
  enumMember(originEgp, 1)                \
  enumMember(originIncomplete, 2)         \
  enumMarker(originUnknown, 256)
KIV_ENUM(OriginCode, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(OriginCode, OriginCodeInstance)

// The type octet of a TLV inside a Prefix-SID attribute (RFC 8669 section 3). Type 2, the SID of
// IPv6, was in drafts only and is deprecated; dumps still name it.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(invalidTlv, 0)               \
  enumMember(labelIndexTlv, 1)            \
  enumMember(ipv6SidTlv, 2)               \
  enumMember(originatorSrgbTlv, 3)
KIV_ENUM(PrefixSidTlvType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(PrefixSidTlvType, PrefixSidTlvTypeInstance)

// The source of a route: this router, an aggregate, a default route that this router originates, or
// a peer (EBGP, IBGP, or EBGP inside a confederation). aspTypeMax is no source; it is the number of
// sources and bounds arrays.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(aspTypeLocal, 0)             \
  enumMember(aspTypeAggregate, 1)         \
  enumMember(aspTypeDefaultOriginate, 2)  \
  enumMember(aspTypeEbgp, 3)              \
  enumMember(aspTypeIbgp, 4)              \
  enumMember(aspTypeConfedEbgp, 5)        \
  enumMember(aspTypeMax, 6)
KIV_ENUM(AspType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(AspType, AspTypeInstance)

// All enumerations of this file, in the order of the registry.
using BgpPathAttributeEnums =
    Kiv::EnumList<AspType, BgpPathAttrFlag, BgpPathAttrType, OriginCode, PrefixSidTlvType>;

// The attribute's name as show commands print it; "Invalid attribute" for a number that is no type.
// The text is a literal, so nobody frees it. Any thread.
OV_EXPORT const char* bgpPathAttrTypeShowString(BgpPathAttrType type) noexcept;

}  // namespace Routing::Bgp

#endif
