// The interning table of IPv6 address specific extended community lists.
#ifndef OVBGP_LIST_EXTCOMMIP6LISTDEDUPTABLE_H
#define OVBGP_LIST_EXTCOMMIP6LISTDEDUPTABLE_H

#include "Kiv/Export.h"
#include "OvBgp/List/ExtCommListDedupTableBase.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// Usually one a process, shared by all users; lists enter by ExtCommIp6List::dedup.
// When it goes, lists that users still hold stay alive, un-interned.
class OV_EXPORT ExtCommIp6ListDedupTable final : public ExtCommListDedupTableBase {
  KIV_OBJECT(ExtCommIp6ListDedupTable)

 public:
  // The one where sub-lists of that classification are interned.
  Dorn::DedupHashTable& classificationListTable(ExtCommClassification) const noexcept {
    return *extCommClassificationListDedupTable();
  }
};

// A new, empty table with notification on.
OV_EXPORT ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
