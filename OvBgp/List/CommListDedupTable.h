// The tables that intern community lists. Each kind of list has a table class of its own,
// so that the compiler rejects interning a list among lists of another kind.
#ifndef OVBGP_LIST_COMMLISTDEDUPTABLE_H
#define OVBGP_LIST_COMMLISTDEDUPTABLE_H

#include "Dorn/DedupHashTable.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"

namespace Routing::Bgp {

// The common base of the tables. It owns a Dorn::DedupHashTable, which does the work. A
// process usually has one table of each kind, shared by all users.
//
// Threads: the constructor reads OvBgpGlobals::multiThreaded(). If that is true, the table
// takes locks, and any thread may intern and release lists; otherwise one thread may.
class OV_EXPORT CommListDedupTableBase : public Kiv::PtrInterface {
 public:
  // Ptr, PtrConst, RawPtr and RawPtrConst to a table.
  KIV_POINTERS(CommListDedupTableBase)

  // Interns `handle`: returns the equal list of the table, or `handle` itself if it was
  // inserted. Throws std::bad_alloc. Users call the `dedup` of the list, which sorts first.
  Dorn::DedupHandle::Ptr dedup(Dorn::DedupHandle::Ptr handle) const {
    return dedupTable_->dedup(std::move(handle));
  }

  // The hash table of the lists; never null. Its lookupByContent() finds a list by the octets of
  // its attribute (CommListContent), or an extended list by its members (ExtCommListContent).
  const Kiv::Ptr<Dorn::DedupHashTable>& dedupTable() const noexcept { return dedupTable_; }
  // The number of interned lists. While other threads insert, the number is approximate.
  U32 size() const { return dedupTable_->size(); }

  // Prints the label "DedupTable", without ending the line, and then the hash table.
  virtual void dumpState(const Kiv::Ptr<const Dorn::DumpContext>& context,
                         unsigned int indent) const;

 protected:
  // A new hash table, with locks or without, as said above. Throws std::bad_alloc.
  CommListDedupTableBase() { initDedupTable(); }

 private:
  void initDedupTable();

  Kiv::Ptr<Dorn::DedupHashTable> dedupTable_;
};

// The table of standard community lists. Destroying it leaves lists alive that users still
// hold; they are no longer interned.
class OV_EXPORT CommListDedupTable final : public CommListDedupTableBase {
  KIV_OBJECT(CommListDedupTable)

 public:
  // An empty table. Users call commListDedupTableFactory() instead. Throws std::bad_alloc.
  CommListDedupTable();
};

// A new, empty table of standard community lists. Throws std::bad_alloc.
OV_EXPORT CommListDedupTable::Ptr commListDedupTableFactory();

// The table of large community lists. Destroying it leaves lists alive that users still hold;
// they are no longer interned.
class OV_EXPORT LargeCommListDedupTable final : public CommListDedupTableBase {
  KIV_OBJECT(LargeCommListDedupTable)

 public:
  // An empty table. Users call largeCommListDedupTableFactory() instead. Throws std::bad_alloc.
  LargeCommListDedupTable();
};

// A new, empty table of large community lists. Throws std::bad_alloc.
OV_EXPORT LargeCommListDedupTable::Ptr largeCommListDedupTableFactory();

}  // namespace Routing::Bgp

#endif
