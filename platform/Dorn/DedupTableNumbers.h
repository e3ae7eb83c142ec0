// A number for each interning table that there is.
//
// Members remember their table by its number, which takes two octets where an
// address takes eight: of the small objects that are held by the million, that is
// a quarter.
#ifndef DORN_DEDUPTABLENUMBERS_H
#define DORN_DEDUPTABLENUMBERS_H

#include <atomic>

#include "Kiv/Types.h"

namespace Dorn {

class DedupHashTable;

class DedupTableNumbers {
 public:
  // As many tables can there be at a time in a process.
  static constexpr U32 maxTables = 0x10000;

  // The number of a new table.  Throws std::length_error.  Any thread.
  static U16 numberOf(DedupHashTable& table);
  // Requires: no member of the table is left.
  static void numberDel(U16 number) noexcept;

  // Requires: the caller has a member of it, and so the table is there.
  static DedupHashTable& table(U16 number) noexcept {
    return *tables[number].load(std::memory_order_relaxed);
  }

 private:
  // Pages that are never written take no memory.
  static std::atomic<DedupHashTable*> tables[maxTables];
};

}  // namespace Dorn

#endif
