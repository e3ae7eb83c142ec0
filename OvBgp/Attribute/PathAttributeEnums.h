// The vocabulary of BGP path attributes: types, flags, and values inside them.
//
// Members are spelled with their enumeration (OriginCode::originIgp): the names
// are too common to stand alone.  Each enumeration has an instance function by
// position in ascending value order, from 0, and by name; both throw
// Kiv::RangeException if there is no such member.  Names, readers and stream
// output: Kiv/Enum.h.  The registry lists all of them as "BgpPathAttributeEnums".
#ifndef OVBGP_ATTRIBUTE_PATHATTRIBUTEENUMS_H
#define OVBGP_ATTRIBUTE_PATHATTRIBUTEENUMS_H

#include "BgpCommon/EnumText.h"
#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// The type octet of a path attribute (RFC 4271 section 5 and the IANA registry).  The
// last one, outside the octet on purpose, says in memory that there is no type; it
// cannot be serialized.
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

// The flags octet of a path attribute (RFC 4271 section 4.3): its bits, and the
// combinations that have a name of their own.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(opt, 0x80)                   \
  enumMember(transitive, 0x40)            \
  enumMember(partial, 0x20)               \
  enumMember(extLen, 0x10)                \
  enumMember(optionalTransitive, 0xc0)    \
  enumMember(optionalTransitivePartial, 0xe0)
KIV_ENUM(BgpPathAttrFlag, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(BgpPathAttrFlag, BgpPathAttrFlagInstance)

// The value of an ORIGIN attribute (RFC 4271 section 5.1.1).
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(originIgp, 0)                \
  enumMember(originEgp, 1)                \
  enumMember(originIncomplete, 2)         \
  enumMarker(originUnknown, 256)
KIV_ENUM(OriginCode, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(OriginCode, OriginCodeInstance)

// The type of a TLV inside a Prefix-SID attribute (RFC 8669 section 3).
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(invalidTlv, 0)               \
  enumMember(labelIndexTlv, 1)            \
  enumMember(ipv6SidTlv, 2)               \
  enumMember(originatorSrgbTlv, 3)
KIV_ENUM(PrefixSidTlvType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(PrefixSidTlvType, PrefixSidTlvTypeInstance)

// Where a route comes from.  The last one is a bound, one past the last kind.
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

// All of the above, in the registry's order.
using BgpPathAttributeEnums =
    Kiv::EnumList<AspType, BgpPathAttrFlag, BgpPathAttrType, OriginCode, PrefixSidTlvType>;

// The attribute's name as show commands write it; "Invalid attribute" for a number
// that is no type.  The text lives as long as the program.
OV_EXPORT const char* bgpPathAttrTypeShowString(BgpPathAttrType type) noexcept;

}  // namespace Routing::Bgp

#endif
