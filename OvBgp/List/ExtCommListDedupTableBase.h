// The common base of the tables that intern extended lists.
#ifndef OVBGP_LIST_EXTCOMMLISTDEDUPTABLEBASE_H
#define OVBGP_LIST_EXTCOMMLISTDEDUPTABLEBASE_H

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "OvBgp/List/CommListDedupTable.h"

namespace Routing::Bgp {

// Has two hash tables, the inherited one of the lists and one of their sub-lists. A list
// holds references to its sub-lists, and a sub-list to its values. When the last user releases
// a list, list, sub-lists and values therefore leave their tables one after the other.
//
// Threads: as CommListDedupTableBase says; all hash tables take locks, or none does.
class OV_EXPORT ExtCommListDedupTableBase : public CommListDedupTableBase {
 public:
  // Ptr, PtrConst, RawPtr and RawPtrConst to a table.
  KIV_POINTERS(ExtCommListDedupTableBase)

  // The hash table of the sub-lists, except those that a derived class keeps apart; never null.
  const Kiv::Ptr<Dorn::DedupHashTable>& extCommClassificationListDedupTable() const noexcept {
    return extCommClassificationListDedupTable_;
  }

  // Prints "ExtCommListDedupTable", for either kind of extended list, and then each hash table
  // under its label. `indent` is the number of blanks before the first line.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                 unsigned int indent) const override;

 protected:
  // An empty hash table of lists, with locks or without as OvBgpGlobals::multiThreaded() says.
  // A derived class calls initClassificationListTable(). Throws std::bad_alloc.
  ExtCommListDedupTableBase() = default;

  // Makes the hash table of sub-lists, unless it exists already. Throws std::bad_alloc.
  void initClassificationListTable();
  // A new, empty hash table for sub-lists. Throws std::bad_alloc.
  static Kiv::Ptr<Dorn::DedupHashTable> subTable();
  // Prints the hash table `table` under `label`. `indent` is that of the whole dump.
  static void dumpTable(const Kiv::Ptr<const Dorn::DumpContext>& context, unsigned int indent,
                        const char* label, const Kiv::Ptr<Dorn::DedupHashTable>& table);

 private:
  Kiv::Ptr<Dorn::DedupHashTable> extCommClassificationListDedupTable_;
};

}  // namespace Routing::Bgp

#endif
