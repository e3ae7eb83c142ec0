// The interning table of IPv6 address specific extended communities.
#ifndef OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H
#define OVBGP_VALUETABLE_EXTCOMMIP6DEDUPTABLE_H

#include <vector>

#include "Dorn/DedupHashTable.h"
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

  // Registers the observer of the values that are interned and leave, in place of any former one;
  // null removes it. As the function of dedupTable(), which says what observers may do.
  void lifeTimeNotifieeIs(const Dorn::DedupHashTableLifeTimeNotifiee::Ptr& notifiee) const {
    dedupTable()->lifeTimeNotifieeIs(notifiee);
  }
  // The values that are interned now, each with a reference. No snapshot while other threads work.
  // Throws std::bad_alloc.
  std::vector<Dorn::DedupHandle::Ptr> members() const { return dedupTable()->members(); }

 private:
  friend class ExtCommIp6;
};

// A new, empty table with notification switched on. `rule` is the root of the rule tree that makes
// the objects. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule);

}  // namespace Routing::Bgp

#endif
