// What operations that run out of memory work on: tables of every kind, in use and
// observed.
#ifndef TESTS_SHORTAGE_WORLD_H
#define TESTS_SHORTAGE_WORLD_H

#include <array>
#include <span>
#include <vector>

#include "Kiv/NotifieeList.h"
#include "Kiv/Type.h"
#include "OvBgp/ExtCommDedupTable.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"

namespace Shortage {

using namespace Routing::Bgp;

// Hears how many there are, and needs no memory for it.
template <class Owner>
class Counter : public Kiv::Notifiee {
 public:
  explicit Counter(const Kiv::Ptr<Owner>& owner) { notifierIs(owner->notifieeList()); }
  void handleChange(const Kiv::Change&) override { ++heard; }
  U64 heard = 0;
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

struct World {
  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  const ExtCommDedupTable::Ptr values = extCommDedupTableFactory(parser->extCommParser());
  const ExtCommIp6DedupTable::Ptr ip6Values = extCommIp6DedupTableFactory(parser->extCommParser());
  const CommListDedupTable::Ptr commLists = commListDedupTableFactory();
  const LargeCommListDedupTable::Ptr largeCommLists = largeCommListDedupTableFactory();
  const ExtCommListDedupTable::Ptr extCommLists = extCommListDedupTableFactory();
  const ExtCommIp6ListDedupTable::Ptr ip6Lists = extCommIp6ListDedupTableFactory();

  const Counter<NotifyingRouteTargetList> targets{values->producerRtList()};
  const Counter<NotifyingRtExtCommListCollection> targetSets{
      extCommLists->notifyingRtExtCommListCollection()};

  std::vector<U64> facts() const;
};

// A kind of list, by its class: its octets, its table, a list under construction.
template <class List>
struct Kind;

inline std::span<const U8> spanOf(const Kiv::String& octets) {
  return {reinterpret_cast<const U8*>(octets.data()), octets.size()};
}

template <>
struct Kind<CommList> {
  static constexpr auto memberOctets = standardOctets;
  static const CommListDedupTable* table(const World& world) { return world.commLists.ptr(); }
  static CommList::PtrConst intern(const World& world, const Kiv::String& octets) {
    return CommList::dedupAttributeValue(table(world), spanOf(octets));
  }
  static CommList::Ptr make() { return commListFactory(); }
};

template <>
struct Kind<LargeCommList> {
  static constexpr auto memberOctets = largeOctets;
  static const LargeCommListDedupTable* table(const World& world) {
    return world.largeCommLists.ptr();
  }
  static LargeCommList::PtrConst intern(const World& world, const Kiv::String& octets) {
    return LargeCommList::dedupAttributeValue(table(world), spanOf(octets));
  }
  static LargeCommList::Ptr make() { return largeCommListFactory(); }
};

template <>
struct Kind<ExtCommList> {
  static constexpr auto memberOctets = extendedOctets;
  static const ExtCommListDedupTable* table(const World& world) { return world.extCommLists.ptr(); }
  static const ExtCommDedupTable* values(const World& world) { return world.values.ptr(); }
  static ExtCommList::PtrConst intern(const World& world, const Kiv::String& octets) {
    return ExtCommList::dedupAttributeValue(table(world), values(world), spanOf(octets));
  }
  static ExtCommList::Ptr make() { return extCommListFactory(); }
};

template <>
struct Kind<ExtCommIp6List> {
  static constexpr auto memberOctets = ip6Octets;
  static const ExtCommIp6ListDedupTable* table(const World& world) { return world.ip6Lists.ptr(); }
  static const ExtCommIp6DedupTable* values(const World& world) { return world.ip6Values.ptr(); }
  static ExtCommIp6List::PtrConst intern(const World& world, const Kiv::String& octets) {
    return ExtCommIp6List::dedupAttributeValue(table(world), values(world), spanOf(octets));
  }
  static ExtCommIp6List::Ptr make() { return extCommIp6ListFactory(); }
};

// The members, of either sort of list.
template <class List>
const auto& membersOf(const List& list) {
  if constexpr (requires { list.commVectorRawPtr(); }) {
    return *list.commVectorRawPtr();
  } else {
    return list.commVector();
  }
}

// A list of each kind that its world's users hold, and octets to make others of, short
// ones and long ones.
template <class List>
struct HeldList {
  static constexpr U32 shortCount = 6;
  static constexpr U32 longCount = 70;

  explicit HeldList(const World& world) : list(Kind<List>::intern(world, heldOctets)) {}

  const Kiv::String heldOctets = wire(0, shortCount, Kind<List>::memberOctets);
  const Kiv::String shortOctets = wire(3, shortCount, Kind<List>::memberOctets);
  const Kiv::String longOctets = wire(1, longCount, Kind<List>::memberOctets);
  const Kiv::Ptr<const List> list;
};

// A world in which routes have lists.
struct LivingWorld : World {
  template <class List>
  const HeldList<List>& held() const;
  std::vector<U64> facts() const;

  const HeldList<CommList> comms{*this};
  const HeldList<LargeCommList> largeComms{*this};
  const HeldList<ExtCommList> extComms{*this};
  const HeldList<ExtCommIp6List> ip6Comms{*this};
};

template <>
inline const HeldList<CommList>& LivingWorld::held() const {
  return comms;
}
template <>
inline const HeldList<LargeCommList>& LivingWorld::held() const {
  return largeComms;
}
template <>
inline const HeldList<ExtCommList>& LivingWorld::held() const {
  return extComms;
}
template <>
inline const HeldList<ExtCommIp6List>& LivingWorld::held() const {
  return ip6Comms;
}

}  // namespace Shortage

#endif
