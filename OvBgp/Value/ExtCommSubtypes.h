// Which enumeration names the subtypes of which type of extended community.
#ifndef OVBGP_VALUE_EXTCOMMSUBTYPES_H
#define OVBGP_VALUE_EXTCOMMSUBTYPES_H

#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

template <BgpExtCommPktType type, Kiv::RegisteredEnum E>
struct ExtCommSubtypes {
  static constexpr BgpExtCommPktType pktType = type;
  using Subtype = E;
};

template <class... Row>
struct ExtCommSubtypeRelation : Row... {};

// The relation.  Types that are not here have no subtype octet, or none that has
// a name.
using ExtCommSubtypedTypes = ExtCommSubtypeRelation<
    ExtCommSubtypes<extCommPktTypeTransTwoOctetAs, BgpExtCommPktSubtypeTransTwoOctetAs>,
    ExtCommSubtypes<extCommPktTypeTransIpv4Address, BgpExtCommPktSubtypeTransIpv4Address>,
    ExtCommSubtypes<extCommPktTypeTransFourOctetAs, BgpExtCommPktSubtypeTransFourOctetAs>,
    ExtCommSubtypes<extCommPktTypeTransOpaque, BgpExtCommPktSubtypeTransOpaque>,
    ExtCommSubtypes<extCommPktTypeTransEvpn, BgpExtCommPktSubtypeEvpn>,
    ExtCommSubtypes<extCommPktTypeTransFlowspecRedirectNexthop,
                    BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>,
    ExtCommSubtypes<extCommPktTypeTransGeneric, BgpExtCommPktSubtypeTransGeneric>,
    ExtCommSubtypes<extCommPktTypeTransGenericPart2, BgpExtCommPktSubtypeTransGenericPart2>,
    ExtCommSubtypes<extCommPktTypeTransGenericPart3, BgpExtCommPktSubtypeTransGenericPart3>,
    ExtCommSubtypes<extCommPktTypeNonTransTwoOctetAs, BgpExtCommPktSubtypeNonTransTwoOctetAs>,
    ExtCommSubtypes<extCommPktTypeNonTransIpv4Address, BgpExtCommPktSubtypeNonTransIpv4Address>,
    ExtCommSubtypes<extCommPktTypeNonTransFourOctetAs, BgpExtCommPktSubtypeNonTransFourOctetAs>,
    ExtCommSubtypes<extCommPktTypeNonTransOpaque, BgpExtCommPktSubtypeNonTransOpaque>>;

namespace Detail {

// Finds the row of `type` among the bases of the relation.
template <BgpExtCommPktType type, class E>
ExtCommSubtypes<type, E> subtypesRow(const ExtCommSubtypes<type, E>* row);

template <class... Row>
const Kiv::EnumInfo* subtypeInfo(BgpExtCommPktType type, const ExtCommSubtypeRelation<Row...>*) {
  const Kiv::EnumInfo* found = nullptr;
  ((Row::pktType == type ? void(found = &Kiv::enumInfo<typename Row::Subtype>) : void()), ...);
  return found;
}

}  // namespace Detail

// The enumeration of a type that is known when compiling.
template <BgpExtCommPktType type>
using ExtCommSubtypeEnum = typename decltype(Detail::subtypesRow<type>(
    static_cast<const ExtCommSubtypedTypes*>(nullptr)))::Subtype;

// The enumeration of any type; null if it has none.
inline const Kiv::EnumInfo* extCommSubtypeInfo(BgpExtCommPktType type) {
  return Detail::subtypeInfo(type, static_cast<const ExtCommSubtypedTypes*>(nullptr));
}

}  // namespace Routing::Bgp

#endif
