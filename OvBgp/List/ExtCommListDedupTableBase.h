// What the interning tables of extended lists have in common.
#ifndef OVBGP_LIST_EXTCOMMLISTDEDUPTABLEBASE_H
#define OVBGP_LIST_EXTCOMMLISTDEDUPTABLEBASE_H

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "OvBgp/List/CommListDedupTable.h"

namespace Routing::Bgp {

// Two tables: the inherited one of the lists, and one of their sub-lists by
// classification. Lists keep their sub-lists, and these their communities; when a
// list goes, each of them leaves its own table in turn. All are locked exactly when
// OvBgpGlobals::multiThreaded() said so at construction.
class OV_EXPORT ExtCommListDedupTableBase : public CommListDedupTableBase {
 public:
  KIV_POINTERS(ExtCommListDedupTableBase)

  const Kiv::Ptr<Dorn::DedupHashTable>& extCommClassificationListDedupTable() const noexcept {
    return extCommClassificationListDedupTable_;
  }

  // Prints "ExtCommListDedupTable", whatever kind of extended list the table is of,
  // and then each of the tables under its label.
  void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                 unsigned int indent) const override;

 protected:
  ExtCommListDedupTableBase();

  // A new, empty table for what a list is made of.
  static Kiv::Ptr<Dorn::DedupHashTable> subTable();
  // Prints one table under its label, at the indentation of the whole dump.
  static void dumpTable(const Kiv::Ptr<const Dorn::DumpContext>& context, unsigned int indent,
                        const char* label, const Kiv::Ptr<Dorn::DedupHashTable>& table);

 private:
  const Kiv::Ptr<Dorn::DedupHashTable> extCommClassificationListDedupTable_;
};

}  // namespace Routing::Bgp

#endif
