// A hash table of routes.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_ROUTE_TABLE_H
#define TOOLS_BGP_COMMUNITIES_RIB_ROUTE_TABLE_H

#include <deque>
#include <vector>

#include "Kiv/Inline.h"
#include "tools/bgp-communities/rib/RouteCommunities.h"
#include "tools/bgp-communities/rib/RouteKey.h"

namespace CommTool {

// An open-addressing hash table with linear probing, split in two parts. The routes are stored
// densely in a deque, in no particular order, so that a walk over all routes reads memory
// sequentially. The index beside it has eight octets a slot: 32 bits of the hash and the position
// of the route. A lookup reads a route only if all 32 bits match, and growth reads no route at all.
// Removal shifts slots back, so there are no tombstones. Owner thread only.
class RouteTable {
 public:
  // A route and the lists that it references.
  struct Route {
    // The identity, unique within the table.
    RouteKey key;
    // The interned lists.
    RouteCommunities communities;
  };

  // Inserts a route, or replaces the lists of the route with this key. May grow the index, which
  // invalidates no route. Throws std::bad_alloc and changes nothing then.
  void insertOrAssign(const RouteKey& key, const RouteCommunities& communities);
  // Prefetches the home slot of a key. Worthwhile for a batch of keys before their lookups, since a
  // lookup in a large table mostly waits for memory. Always inlined, because GCC removes calls of
  // functions that only prefetch.
  KIV_INLINE void prefetch(const RouteKey& key) const {
    __builtin_prefetch(slots_.data() + home(hashOf(key)));
  }
  // Removes the route with this key, if it exists. The last route moves to its position.
  void erase(const RouteKey& key);

  // The number of routes.
  std::size_t size() const { return routes_.size(); }
  // Iterates over all routes. Iterators are valid until the next change.
  auto begin() const { return routes_.begin(); }
  // The end of the iteration.
  auto end() const { return routes_.end(); }

 private:
  // The position in a free slot.
  static constexpr U32 none = ~U32{0};

  // A slot of the index.
  struct Slot {
    U32 hash = 0;      // of the route's key
    U32 route = none;  // position in routes_
  };

  static U32 hashOf(const RouteKey& key) { return static_cast<U32>(key.hash()); }
  std::size_t next(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }
  std::size_t home(U32 hash) const { return hash & (slots_.size() - 1); }
  // Returns the first slot of the probe sequence that is free or whose route `isWanted` accepts.
  template <class IsWanted>
  std::size_t find(U32 hash, const IsWanted& isWanted) const;
  std::size_t find(U32 hash, const RouteKey& key) const;
  void grow();
  void slotErase(std::size_t at);

  std::deque<Route> routes_;
  std::vector<Slot> slots_ = std::vector<Slot>(64);  // a power of two; load factor at most 3/4
};

}  // namespace CommTool

#endif
