#include "tools/bgp-communities/RouteTable.h"

#include <utility>

namespace CommTool {

template <class IsWanted>
std::size_t RouteTable::find(U32 hash, const IsWanted& isWanted) const {
  std::size_t at = home(hash);
  while (places_[at].route != none && !(places_[at].hash == hash && isWanted(places_[at].route))) {
    at = next(at);
  }
  return at;
}

std::size_t RouteTable::find(U32 hash, const RouteKey& key) const {
  return find(hash, [&](U32 route) { return routes_[route].key == key; });
}

void RouteTable::insertOrAssign(const RouteKey& key, const RouteCommunities& communities) {
  const U32 hash = hashOf(key);
  std::size_t at = find(hash, key);
  if (places_[at].route != none) {
    routes_[places_[at].route].communities = communities;
    return;
  }
  if (size() >= places_.size() / 4 * 3) {
    grow();
    at = find(hash, key);
  }
  routes_.push_back({key, communities});
  places_[at] = {hash, static_cast<U32>(size() - 1)};
}

void RouteTable::erase(const RouteKey& key) {
  const std::size_t at = find(hashOf(key), key);
  const U32 route = places_[at].route;
  if (route == none) return;
  // The last one fills the gap.
  const U32 last = static_cast<U32>(size() - 1);
  const std::size_t placeOfLast =
      find(hashOf(routes_.back().key), [last](U32 other) { return other == last; });
  places_[placeOfLast].route = route;
  std::swap(routes_[route], routes_.back());
  routes_.pop_back();
  placeErase(at);
}

// Moves those behind it up that may stand nearer to their homes.
void RouteTable::placeErase(std::size_t at) {
  const std::size_t mask = places_.size() - 1;
  for (std::size_t from = next(at); places_[from].route != none; from = next(from)) {
    const std::size_t fromHome = (from - home(places_[from].hash)) & mask;
    if (fromHome < ((from - at) & mask)) continue;
    places_[at] = places_[from];
    at = from;
  }
  places_[at] = Place();
}

void RouteTable::grow() {
  const std::vector<Place> before = std::exchange(places_, std::vector<Place>(2 * places_.size()));
  for (const Place& place : before) {
    if (place.route == none) continue;
    places_[find(place.hash, [](U32) { return false; })] = place;
  }
}

}  // namespace CommTool
