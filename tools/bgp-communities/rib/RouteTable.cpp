#include "tools/bgp-communities/rib/RouteTable.h"

#include <utility>

namespace CommTool {

// Terminates, because the load factor keeps some slots free. The hash is compared first: only a
// match of all its 32 bits costs an access to a route.
template <class IsWanted>
std::size_t RouteTable::find(U32 hash, const IsWanted& isWanted) const {
  std::size_t at = home(hash);
  while (slots_[at].route != none && !(slots_[at].hash == hash && isWanted(slots_[at].route))) {
    at = next(at);
  }
  return at;
}

std::size_t RouteTable::find(U32 hash, const RouteKey& key) const {
  return find(hash, [&](U32 route) { return routes_[route].key == key; });
}

// A new route is appended before its slot is written, so an exception leaves the index unchanged.
void RouteTable::insertOrAssign(const RouteKey& key, const RouteCommunities& communities) {
  const U32 hash = hashOf(key);
  std::size_t at = find(hash, key);
  if (slots_[at].route != none) {
    routes_[slots_[at].route].communities = communities;
    return;
  }
  if (size() >= slots_.size() / 4 * 3) {
    grow();
    at = find(hash, key);
  }
  routes_.push_back({key, communities});
  slots_[at] = {hash, static_cast<U32>(size() - 1)};
}

void RouteTable::erase(const RouteKey& key) {
  const std::size_t at = find(hashOf(key), key);
  const U32 route = slots_[at].route;
  if (route == none) return;
  // The last route moves into the gap, so the slot that refers to it must be found and changed.
  const U32 last = static_cast<U32>(size() - 1);
  const std::size_t slotOfLast =
      find(hashOf(routes_.back().key), [last](U32 other) { return other == last; });
  slots_[slotOfLast].route = route;
  std::swap(routes_[route], routes_.back());
  routes_.pop_back();
  slotErase(at);
}

// Frees a slot without breaking any probe sequence. Each following slot up to the next free one is
// moved into the gap, unless it would then be before its home slot.
void RouteTable::slotErase(std::size_t at) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t from = next(at); slots_[from].route != none; from = next(from)) {
    // Distances from the home slot and from the gap, around the end of the index.
    const std::size_t fromHome = (from - home(slots_[from].hash)) & mask;
    if (fromHome < ((from - at) & mask)) continue;
    slots_[at] = slots_[from];
    at = from;
  }
  slots_[at] = Slot();
}

// Doubles the index. The slots have the hashes, so no route is read. The new index is allocated
// before the old one is given up.
void RouteTable::grow() {
  const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  for (const Slot& slot : before) {
    if (slot.route == none) continue;
    slots_[find(slot.hash, [](U32) { return false; })] = slot;
  }
}

}  // namespace CommTool
