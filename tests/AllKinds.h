// All tables of the library at once, and lists of every kind made from numbers.
#ifndef TESTS_ALLKINDS_H
#define TESTS_ALLKINDS_H

#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

#include "Kiv/Type.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"

namespace AllKinds {

using namespace Routing::Bgp;

// Objects alive of all types, but for the room of tables, which they keep for later.
inline U64 objectsAlive() {
  U64 objects = 0;
  Kiv::forEachType([&objects](const Kiv::Type& type) {
    if (type.name() != std::string_view("Dorn::DedupBucket")) objects += type.objects();
  });
  return objects;
}

// The tables of an agent.  Their members go before them.
struct Tables {
  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  const ExtCommDedupTable::Ptr values = extCommDedupTableFactory(parser->extCommParser());
  const ExtCommIp6DedupTable::Ptr ip6Values = extCommIp6DedupTableFactory(parser->extCommParser());
  const CommListDedupTable::Ptr commLists = commListDedupTableFactory();
  const LargeCommListDedupTable::Ptr largeCommLists = largeCommListDedupTableFactory();
  const ExtCommListDedupTable::Ptr extCommLists = extCommListDedupTableFactory();
  const ExtCommIp6ListDedupTable::Ptr ip6Lists = extCommIp6ListDedupTableFactory();

  // Of each table, and of what hangs on them.
  std::array<U32, 11> sizes() const {
    return {values->size(),
            ip6Values->size(),
            commLists->size(),
            largeCommLists->size(),
            extCommLists->size(),
            extCommLists->extCommClassificationListDedupTable()->size(),
            extCommLists->rtExtCommClassificationListDedupTable()->size(),
            ip6Lists->size(),
            ip6Lists->extCommClassificationListDedupTable()->size(),
            values->producerRtList()->rt().size(),
            extCommLists->notifyingRtExtCommListCollection()->rtExtCommList().size()};
  }
};

// The wire octets of `count` communities from number `first` on, in descending order,
// the first one twice.
inline Kiv::String wire(U32 first, U32 count, Kiv::String (*octetsOf)(U32)) {
  Kiv::String octets = octetsOf(first + count - 1);
  for (U32 number = first + count; number-- != first;) octets += octetsOf(number);
  return octets;
}

inline Kiv::String octetsOf(std::initializer_list<U32> words) {
  Kiv::String octets;
  for (const U32 word : words) {
    for (const int shift : {24, 16, 8, 0}) octets.push_back(static_cast<char>(word >> shift));
  }
  return octets;
}

inline Kiv::String standardOctets(U32 number) { return octetsOf({0xFDE80000 + number}); }
inline Kiv::String largeOctets(U32 number) { return octetsOf({65000, 7, number}); }

// Of each class that the rule tree knows, route targets most of all.
inline Kiv::String extendedOctets(U32 number) {
  constexpr std::array<U32, 10> kinds{0x0002FDE8, 0x0102C000, 0x0202FDE8, 0x0003FDE8, 0x030B0000,
                                      0x030D0000, 0x43000000, 0x4004FDE8, 0x03150000, 0x41770000};
  return octetsOf({kinds[number % kinds.size()], number});
}
inline Kiv::String ip6Octets(U32 number) {
  return octetsOf({number % 2 == 0 ? 0x00022001U : 0x400B2001U, 0x0DB80000, 0, 0, number});
}

// A kind of list, by its class: its octets, its table, a list under construction.
template <class List>
struct Kind;

inline std::span<const U8> spanOf(const Kiv::String& octets) {
  return {reinterpret_cast<const U8*>(octets.data()), octets.size()};
}

// A kind of plain list, and one of extended lists. `tableIn` is the member of Tables with the
// table of the lists, `valuesIn` that with the table of the values.
template <class List, auto octets, auto tableIn, auto factory>
struct PlainKind {
  static constexpr auto memberOctets = octets;
  static auto table(const Tables& tables) { return (tables.*tableIn).ptr(); }
  static auto intern(const Tables& tables, const Kiv::String& octetsOfList) {
    return List::dedupAttributeValue(table(tables), spanOf(octetsOfList));
  }
  static auto make() { return factory(); }
};
template <class List, auto octets, auto tableIn, auto valuesIn, auto factory>
struct ExtendedKind : PlainKind<List, octets, tableIn, factory> {
  static auto values(const Tables& tables) { return (tables.*valuesIn).ptr(); }
  static auto intern(const Tables& tables, const Kiv::String& octetsOfList) {
    return List::dedupAttributeValue(ExtendedKind::table(tables), values(tables),
                                     spanOf(octetsOfList));
  }
};

template <>
struct Kind<CommList> : PlainKind<CommList, standardOctets, &Tables::commLists, commListFactory> {};
template <>
struct Kind<LargeCommList>
    : PlainKind<LargeCommList, largeOctets, &Tables::largeCommLists, largeCommListFactory> {};
template <>
struct Kind<ExtCommList> : ExtendedKind<ExtCommList, extendedOctets, &Tables::extCommLists,
                                        &Tables::values, extCommListFactory> {};
template <>
struct Kind<ExtCommIp6List> : ExtendedKind<ExtCommIp6List, ip6Octets, &Tables::ip6Lists,
                                           &Tables::ip6Values, extCommIp6ListFactory> {};

// The members, of either sort of list.
template <class List>
const auto& membersOf(const List& list) {
  if constexpr (requires { list.commVectorRawPtr(); }) {
    return *list.commVectorRawPtr();
  } else {
    return list.commVector();
  }
}

}  // namespace AllKinds

#endif
