// The relation between the types of extended communities and the enumerations of their subtypes.
//
// The same subtype number means different things under different types, so each type has an
// enumeration of its own. Code that knows the type when compiling uses ExtCommSubtypeEnum; code
// that has a type octet uses extCommSubtypeInfo.
#ifndef OVBGP_VALUE_EXTCOMMSUBTYPES_H
#define OVBGP_VALUE_EXTCOMMSUBTYPES_H

#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// One row of the relation: `E` names the subtypes of `type`.
template <BgpExtCommPktType type, Kiv::RegisteredEnum E>
struct ExtCommSubtypes {
  // The type of the row.
  static constexpr BgpExtCommPktType pktType = type;
  // The enumeration of the row.
  using Subtype = E;
};

// A list of rows. Each row is a base class, so that overload resolution finds the row of a type
// (Detail::subtypesRow), and a type with two rows does not compile when it is looked up.
template <class... Row>
struct ExtCommSubtypeRelation : Row... {};

// The relation. Types that are absent have no subtype octet, or no subtype with a name.
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

// Declared only. A pointer to the relation converts to a pointer to the base of this `type`, and
// the compiler deduces `E` from that base.
template <BgpExtCommPktType type, class E>
ExtCommSubtypes<type, E> subtypesRow(const ExtCommSubtypes<type, E>* row);

// Compares `type` with each row in turn; null if no row has it. The second argument only carries
// the rows and may be null.
template <class... Row>
const Kiv::EnumInfo* subtypeInfo(BgpExtCommPktType type, const ExtCommSubtypeRelation<Row...>*) {
  const Kiv::EnumInfo* found = nullptr;
  ((Row::pktType == type ? void(found = &Kiv::enumInfo<typename Row::Subtype>) : void()), ...);
  return found;
}

}  // namespace Detail

// The enumeration of the subtypes of `type`. A type without one does not compile.
template <BgpExtCommPktType type>
using ExtCommSubtypeEnum = typename decltype(Detail::subtypesRow<type>(
    static_cast<const ExtCommSubtypedTypes*>(nullptr)))::Subtype;

// The enumeration of the subtypes of `type` with its type erased; null if there is none. The result
// lives as long as the library. Any thread.
inline const Kiv::EnumInfo* extCommSubtypeInfo(BgpExtCommPktType type) {
  return Detail::subtypeInfo(type, static_cast<const ExtCommSubtypedTypes*>(nullptr));
}

}  // namespace Routing::Bgp

#endif
