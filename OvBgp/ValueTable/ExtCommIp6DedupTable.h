// The interning table of IPv6 address specific extended communities.
#ifndef OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H
#define OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H

#include "Kiv/Export.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtCommIp6.h"
#include "OvBgp/ValueTable/ExtCommDedupTableBase.h"

namespace Routing::Bgp {

// A process usually has one such table, shared by all users, who get values by
// ExtCommIp6::dedupContent. After the table is destroyed, values that users still hold stay alive,
// no longer interned. Threads: as ExtCommDedupTableBase says. It has no observer of its own.
class OV_EXPORT ExtCommIp6DedupTable final : public ExtCommDedupTableBase {
  KIV_OBJECT(ExtCommIp6DedupTable)

 public:
  // An empty table. Users call extCommIp6DedupTableFactory instead.
  explicit ExtCommIp6DedupTable(const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

  // The member with this content, or null. It hides the function of the base, because this table
  // probes with probeHash(). The second argument, the content's hash(), is therefore ignored; it
  // exists so that both tables can be called alike.
  Dorn::DedupHandle::Ptr lookupByContent(const ExtCommIp6Content& key, U32 /*hash*/) const {
    return ExtCommDedupTableBase::lookupByContent(key, key.probeHash());
  }

 private:
  friend class ExtCommIp6;
};

// A new, empty table with notification switched on. `rule` is the root of the rule tree that makes
// the objects. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

}  // namespace Routing::Bgp

#endif
