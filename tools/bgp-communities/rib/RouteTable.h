// Routes by their keys, with the lists that each holds.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_TABLE_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_TABLE_H

#include <deque>
#include <vector>

#include "Kiv/Inline.h"
#include "tools/bgp-communities/RouteCommunities.h"
#include "tools/bgp-communities/RouteKey.h"

namespace CommTool {

// The routes stand densely, in no particular order, so that walks over all of them
// read memory from end to end.  An open-addressing index beside them has a part of
// each one's hash: a look-up reads a route only if it is likely to be the right one,
// and growth reads none.
class RouteTable {
 public:
  struct Route {
    RouteKey key;
    RouteCommunities communities;
  };

  void insertOrAssign(const RouteKey& key, const RouteCommunities& communities);
  // Says that this key will be asked for soon.  For several at a time: a look-up waits
  // for memory and does little else.  Inlined, as GCC leaves out calls of what does
  // nothing but prefetch.
  KIV_INLINE void prefetch(const RouteKey& key) const {
    __builtin_prefetch(places_.data() + home(hashOf(key)));
  }
  // Nothing for a key that is not there.
  void erase(const RouteKey& key);

  std::size_t size() const { return routes_.size(); }
  auto begin() const { return routes_.begin(); }
  auto end() const { return routes_.end(); }

 private:
  static constexpr U32 none = ~U32{0};

  // Of the index; free if there is no route.
  struct Place {
    U32 hash = 0;
    U32 route = none;
  };

  static U32 hashOf(const RouteKey& key) { return static_cast<U32>(key.hash()); }
  std::size_t next(std::size_t at) const { return (at + 1) & (places_.size() - 1); }
  std::size_t home(U32 hash) const { return hash & (places_.size() - 1); }
  // The first place, from the hash's home on, that is free or that `isWanted` accepts.
  template <class IsWanted>
  std::size_t find(U32 hash, const IsWanted& isWanted) const;
  std::size_t find(U32 hash, const RouteKey& key) const;
  void grow();
  void placeErase(std::size_t at);

  std::deque<Route> routes_;
  std::vector<Place> places_ = std::vector<Place>(64);  // a power of two, never full
};

}  // namespace CommTool

#endif
