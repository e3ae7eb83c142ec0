// The vocabulary of BGP path attributes: types, flags, and values inside them.
//
// Members are spelled with their enumeration (OriginCode::originIgp): the names
// are too common to stand alone.  Each enumeration has an instance function by
// position in ascending value order, from 0, and by name; both throw
// Kiv::RangeException if there is no such member.  Names, readers and stream
// output: Kiv/Enum.h.  The registry lists all of them as "BgpPathAttributeEnums".
#ifndef OVBGP_BGPPATHATTRIBUTEENUMS_H
#define OVBGP_BGPPATHATTRIBUTEENUMS_H

#include "Kiv/Enum.h"
#include "Kiv/Export.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/EnumText.h"

namespace Routing::Bgp {

// The type octet of a path attribute (RFC 4271 section 5 and the IANA registry).  The
// last one, outside the octet on purpose, says in memory that there is no type; it
// cannot be serialized.
#define ENUM_ROWS(member, marker)     \
  member(invalidPathAttr, 0)          \
  member(origin, 1)                   \
  member(asPath, 2)                   \
  member(nextHop, 3)                  \
  member(multiExitDisc, 4)            \
  member(localPref, 5)                \
  member(atomicAggregate, 6)          \
  member(aggregator, 7)               \
  member(community, 8)                \
  member(originatorId, 9)             \
  member(clusterList, 10)             \
  member(advertiser, 12)              \
  member(rcidPath, 13)                \
  member(mpReachNlri, 14)             \
  member(mpUnreachNlri, 15)           \
  member(extCommunity, 16)            \
  member(as4Path, 17)                 \
  member(as4Aggregator, 18)           \
  member(pmsiTunnel, 22)              \
  member(tunnelEncapsulation, 23)     \
  member(extCommunityIp6, 25)         \
  member(accumulatedIgpMetric, 26)    \
  member(bgpLs, 29)                   \
  member(largeCommunity, 32)          \
  member(domainPath, 36)              \
  member(prefixSid, 40)               \
  member(attrSet, 128)                \
  member(reservedForDevelopment, 255) \
  marker(attrTypeUnknown, 256)
KIV_ENUM(BgpPathAttrType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(BgpPathAttrType, BgpPathAttrTypeInstance)

// The flags octet of a path attribute (RFC 4271 section 4.3): its bits, and the
// combinations that have a name of their own.
#define ENUM_ROWS(member, marker)  \
  member(opt, 0x80)                \
  member(transitive, 0x40)         \
  member(partial, 0x20)            \
  member(extLen, 0x10)             \
  member(optionalTransitive, 0xc0) \
  member(optionalTransitivePartial, 0xe0)
KIV_ENUM(BgpPathAttrFlag, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(BgpPathAttrFlag, BgpPathAttrFlagInstance)

// The value of an ORIGIN attribute (RFC 4271 section 5.1.1).
#define ENUM_ROWS(member, marker) \
  member(originIgp, 0)            \
  member(originEgp, 1)            \
  member(originIncomplete, 2)     \
  marker(originUnknown, 256)
KIV_ENUM(OriginCode, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(OriginCode, OriginCodeInstance)

// The type of a TLV inside a Prefix-SID attribute (RFC 8669 section 3).
#define ENUM_ROWS(member, marker) \
  member(invalidTlv, 0)           \
  member(labelIndexTlv, 1)        \
  member(ipv6SidTlv, 2)           \
  member(originatorSrgbTlv, 3)
KIV_ENUM(PrefixSidTlvType, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_POSITION(PrefixSidTlvType, PrefixSidTlvTypeInstance)

// Where a route comes from.  The last one is a bound, one past the last kind.
#define ENUM_ROWS(member, marker)    \
  member(aspTypeLocal, 0)            \
  member(aspTypeAggregate, 1)        \
  member(aspTypeDefaultOriginate, 2) \
  member(aspTypeEbgp, 3)             \
  member(aspTypeIbgp, 4)             \
  member(aspTypeConfedEbgp, 5)       \
  member(aspTypeMax, 6)
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
