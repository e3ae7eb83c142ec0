// The interning table of IPv6 address specific extended communities.
#ifndef OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H
#define OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtCommIp6.h"
#include "OvBgp/ValueTable/ExtCommDedupTableBase.h"

namespace Routing::Bgp {

// Usually one a process, shared by all users; values come by
// ExtCommIp6::dedupContent. When it goes, values that users still hold stay alive,
// un-interned.
class OV_EXPORT ExtCommIp6DedupTable final : public ExtCommDedupTableBase {
  KIV_OBJECT(ExtCommIp6DedupTable)

 public:
  explicit ExtCommIp6DedupTable(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

  // The member of this content, or null. `hash` is the content's hash(), as for any table;
  // this one is probed with another.
  Dorn::DedupHandle::Ptr lookupByContent(const ExtCommIp6Content& key, U32 /*hash*/) const {
    return ExtCommDedupTableBase::lookupByContent(key, key.probeHash());
  }

 private:
  friend class ExtCommIp6;
};

// A new, empty table of what `rule` makes, with notification on.
OV_EXPORT ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

}  // namespace Routing::Bgp

#endif
