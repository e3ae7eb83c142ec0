// What operations that run out of memory work on: tables of every kind, in use and
// observed.
#ifndef TESTS_SHORTAGE_WORLD_H
#define TESTS_SHORTAGE_WORLD_H

#include <vector>

#include "Kiv/NotifieeList.h"
#include "tests/AllKinds.h"

namespace Shortage {

using namespace AllKinds;

// Hears how many there are, and needs no memory for it.
template <class Owner>
class Counter : public Kiv::Notifiee {
 public:
  explicit Counter(const Kiv::Ptr<Owner>& owner) { notifierIs(owner->notifieeList()); }
  void handleChange(const Kiv::Change&) override { ++heard; }
  U64 heard = 0;
};

struct World : Tables {
  const Counter<NotifyingRouteTargetList> targets{values->producerRtList()};
  const Counter<NotifyingRtExtCommListCollection> targetSets{
      extCommLists->notifyingRtExtCommListCollection()};

  std::vector<U64> facts() const;
};

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
