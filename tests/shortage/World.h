// The objects that operations work on while they run out of memory: tables of every kind, which
// contain lists and are observed.
#ifndef TESTS_SHORTAGE_WORLD_H
#define TESTS_SHORTAGE_WORLD_H

#include <tuple>
#include <vector>

#include "Kiv/NotifieeList.h"
#include "tests/AllKinds.h"

namespace Shortage {

using namespace AllKinds;

// An observer that counts its notifications and allocates nothing.
template <class Owner>
class Counter : public Kiv::Notifiee {
 public:
  explicit Counter(const Kiv::Ptr<Owner>& owner) { notifierIs(owner->notifieeList()); }
  void handleChange(const Kiv::Change&) override { ++heard; }
  U64 heard = 0;
};

// The tables and observers. facts() lists everything that a failed operation must leave as it
// was.
struct World : Tables {
  const Counter<NotifyingRouteTargetList> targets{values->producerRtList()};
  const Counter<NotifyingRtExtCommListCollection> targetSets{
      extCommLists->notifyingRtExtCommListCollection()};

  std::vector<U64> facts() const;
};

// A list that users hold, and attribute values for other lists: a short one, and one that needs
// more memory than is on the stack.
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

// A world with one held list of each kind.
struct LivingWorld : World {
  template <class List>
  const HeldList<List>& held() const {
    return std::get<const HeldList<List>&>(std::tie(comms, largeComms, extComms, ip6Comms));
  }
  std::vector<U64> facts() const;

  const HeldList<CommList> comms{*this};
  const HeldList<LargeCommList> largeComms{*this};
  const HeldList<ExtCommList> extComms{*this};
  const HeldList<ExtCommIp6List> ip6Comms{*this};
};

}  // namespace Shortage

#endif
