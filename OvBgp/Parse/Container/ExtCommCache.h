// Texts of extended communities that a show command has made before.
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

// Remembers, for the eight octets of a community as a number, its text in each of
// two renderings: plain, and with AS numbers in dotted notation. It makes no text:
// whoever misses one makes it, and inserts it. Grows until its owner deletes what
// is in it. Owner thread only.
class OV_EXPORT ExtCommCache final : public Kiv::PtrInterface {
  KIV_OBJECT(ExtCommCache)

 public:
  // Empty if there is none.
  Kiv::String lookup(const U64& extCommVal, bool asdot) const;
  // In place of any that is there.
  void insert(const U64& extCommVal, Kiv::String extCommStr, bool asdot);

  void extCommToStringIs(U64 extCommVal, Kiv::String text);
  bool extCommToStringDel(U64 extCommVal) { return extCommToString_.erase(extCommVal) != 0; }
  void extCommToStringDelAll() { extCommToString_.clear(); }

  void extCommToAsdotStringIs(U64 extCommVal, Kiv::String text);
  bool extCommToAsdotStringDel(U64 extCommVal) {
    return extCommToAsdotString_.erase(extCommVal) != 0;
  }
  void extCommToAsdotStringDelAll() { extCommToAsdotString_.clear(); }

 private:
  // Communities come from anywhere.
  struct Hash {
    std::size_t operator()(U64 extCommVal) const noexcept {
      return Kiv::hashSingleAttr(0, extCommVal);
    }
  };
  using Texts = std::unordered_map<U64, Kiv::String, Hash>;

  Texts extCommToString_;
  Texts extCommToAsdotString_;
};

OV_EXPORT ExtCommCache::Ptr extCommCacheFactory();

}  // namespace BgpShowCli

#endif
