#include "OvBgp/Parse/Container/ExtCommCache.h"

#include <utility>

#include "Dorn/NotifyingObject.h"

namespace BgpShowCli {

KIV_OBJECT_DEFINE(ExtCommCache)

// An empty string can mean a miss, because the user-interface text of a community is never empty.
Kiv::String ExtCommCache::lookup(const U64& extCommVal, bool asdot) const {
  const Texts& texts = asdot ? extCommToAsdotString_ : extCommToString_;
  const auto at = texts.find(extCommVal);
  return at == texts.end() ? Kiv::String() : at->second;
}

// The text was copied or moved once at the call, and is only moved from there into the map.
void ExtCommCache::insert(const U64& extCommVal, Kiv::String extCommStr, bool asdot) {
  if (asdot) {
    extCommToAsdotStringIs(extCommVal, std::move(extCommStr));
  } else {
    extCommToStringIs(extCommVal, std::move(extCommStr));
  }
}

void ExtCommCache::extCommToStringIs(U64 extCommVal, Kiv::String text) {
  extCommToString_.insert_or_assign(extCommVal, std::move(text));
}

void ExtCommCache::extCommToAsdotStringIs(U64 extCommVal, Kiv::String text) {
  extCommToAsdotString_.insert_or_assign(extCommVal, std::move(text));
}

ExtCommCache::Ptr extCommCacheFactory() { return Dorn::notifyingObject<ExtCommCache>(); }

}  // namespace BgpShowCli
