// BgpShowCli::ExtCommCache: a cache of the texts that show commands print for extended communities.
//
//   Kiv::String text = cache->lookup(value, asdot);
//   if (text.empty()) {
//     text = parser->showString(value, asdot, false, false);
//     cache->insert(value, text, asdot);
//   }
#ifndef OVBGP_PARSE_CONTAINER_EXTCOMMCACHE_H
#define OVBGP_PARSE_CONTAINER_EXTCOMMCACHE_H

#include <cstddef>
#include <unordered_map>

#include "Kiv/Export.h"
#include "Kiv/Hash.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"

namespace BgpShowCli {

// Two maps from the eight octets of a community, first octet in the highest bits, to a text: one
// map for plain AS numbers and one map for AS numbers in asdot notation (high.low). The cache never
// produces a text itself; on a miss the caller does and inserts it.
//
// There is no size limit and no eviction: entries stay until the owner deletes them. Owner thread
// only.
class OV_EXPORT ExtCommCache final : public Kiv::PtrInterface {
  KIV_OBJECT(ExtCommCache)

 public:
  // Returns the text for `extCommVal` from the map that `asdot` selects; an empty string on a miss.
  Kiv::String lookup(const U64& extCommVal, bool asdot) const;
  // Stores `extCommStr` in the map that `asdot` selects and replaces any previous text.
  void insert(const U64& extCommVal, Kiv::String extCommStr, bool asdot);

  // Stores `text` in the plain map and replaces any previous text.
  void extCommToStringIs(U64 extCommVal, Kiv::String text);
  // Deletes the text from the plain map; returns whether there was a text.
  bool extCommToStringDel(U64 extCommVal) { return extCommToString_.erase(extCommVal) != 0; }
  // Deletes all texts of the plain map.
  void extCommToStringDelAll() { extCommToString_.clear(); }

  // Stores `text` in the asdot map and replaces any previous text.
  void extCommToAsdotStringIs(U64 extCommVal, Kiv::String text);
  // Deletes the text from the asdot map; returns whether there was a text.
  bool extCommToAsdotStringDel(U64 extCommVal) {
    return extCommToAsdotString_.erase(extCommVal) != 0;
  }
  // Deletes all texts of the asdot map.
  void extCommToAsdotStringDelAll() { extCommToAsdotString_.clear(); }

 private:
  // A hash with a secret key, because remote peers choose the values and could otherwise construct
  // collisions.
  struct Hash {
    std::size_t operator()(U64 extCommVal) const noexcept {
      return Kiv::hashSingleAttr(0, extCommVal);
    }
  };
  using Texts = std::unordered_map<U64, Kiv::String, Hash>;

  Texts extCommToString_;
  Texts extCommToAsdotString_;
};

// Returns a new, empty cache with notification on. Throws std::bad_alloc.
OV_EXPORT ExtCommCache::Ptr extCommCacheFactory();

}  // namespace BgpShowCli

#endif
