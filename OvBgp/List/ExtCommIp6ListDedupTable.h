// The table that interns lists of IPv6 address specific extended communities.
#ifndef OVBGP_LIST_EXTCOMMIP6LISTDEDUPTABLE_H
#define OVBGP_LIST_EXTCOMMIP6LISTDEDUPTABLE_H

#include "Kiv/Export.h"
#include "OvBgp/List/ExtCommListDedupTableBase.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

// The table of IPv6 lists and their sub-lists. A process usually has one, shared by all users.
// Lists are interned by ExtCommIp6List::dedup and its siblings. Destroying the table leaves
// lists alive that users still hold; they are no longer interned.
class OV_EXPORT ExtCommIp6ListDedupTable final : public ExtCommListDedupTableBase {
  KIV_OBJECT(ExtCommIp6ListDedupTable)

 public:
  // An empty table. Users call extCommIp6ListDedupTableFactory() instead. Throws std::bad_alloc.
  ExtCommIp6ListDedupTable() { handleInitialized(); }

  // Makes the hash table of the sub-lists, beside that of the lists, which the base makes. The
  // constructor calls this function; a later call changes nothing. Throws std::bad_alloc.
  void handleInitialized();

  // The hash table that interns the sub-lists of a classification: here one for all of them.
  Dorn::DedupHashTable& classificationListTable(ExtCommClassification) const noexcept {
    return *extCommClassificationListDedupTable();
  }
};

// A new, empty table, with notification switched on. Throws std::bad_alloc.
OV_EXPORT ExtCommIp6ListDedupTable::Ptr extCommIp6ListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
