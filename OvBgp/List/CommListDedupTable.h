// The interning tables of community lists: one class a kind of list, so that a
// list cannot be interned among lists of another kind.
#ifndef OVBGP_LIST_COMMLISTDEDUPTABLE_H
#define OVBGP_LIST_COMMLISTDEDUPTABLE_H

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Routing::Bgp {

// What the tables have in common.  Holds its Dorn::DedupHashTable, locked exactly
// when OvBgpGlobals::multiThreaded() said so at construction; interning is then
// open to any thread.  Usually one a process and kind, shared by all users.
class OV_EXPORT CommListDedupTableBase : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(CommListDedupTableBase)

  // The member equal to `handle`, which becomes one if there is none.
  Dorn::DedupHandle::Ptr dedup(Dorn::DedupHandle::Ptr handle) const {
    return dedupTable_->dedup(std::move(handle));
  }

  const Kiv::Ptr<Dorn::DedupHashTable>& dedupTable() const noexcept { return dedupTable_; }
  // Lists interned now.
  U32 size() const { return dedupTable_->size(); }

  // Prints "DedupTable", which does not end the line, and then the table.
  virtual void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                         unsigned int indent) const;

 protected:
  CommListDedupTableBase() { initDedupTable(); }

 private:
  void initDedupTable();

  Kiv::Ptr<Dorn::DedupHashTable> dedupTable_;
};

// The table of standard community lists.
class OV_EXPORT CommListDedupTable final : public CommListDedupTableBase {
  KIV_OBJECT(CommListDedupTable)
};

OV_EXPORT CommListDedupTable::Ptr commListDedupTableFactory();

// The table of large community lists.
class OV_EXPORT LargeCommListDedupTable final : public CommListDedupTableBase {
  KIV_OBJECT(LargeCommListDedupTable)
};

OV_EXPORT LargeCommListDedupTable::Ptr largeCommListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
