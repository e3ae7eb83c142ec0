// DedupTableNumbers: a number of 16 bits for each interning table of the process.
//
// A member remembers its table by this number, which takes two bytes where an address would take
// eight. Values of 24 bytes exist by the million, so this is a quarter of their size.
#ifndef DORN_DEDUPTABLENUMBERS_H
#define DORN_DEDUPTABLENUMBERS_H

#include <atomic>

#include "Kiv/Types.h"

namespace Dorn {

class DedupHashTable;

// Static functions only. All may be called by any thread.
class DedupTableNumbers {
 public:
  // The most tables that can exist at a time.
  static constexpr U32 maxTables = 0x10000;

  // Assigns a free number to a new table. Throws std::length_error if there is none.
  static U16 numberOf(DedupHashTable& table);
  // Frees the number of a table that is being destroyed. Requires: the table has no members, so
  // nobody looks the number up any more.
  static void numberDel(U16 number) noexcept;

  // The table with this number. Requires: the caller owns a reference to one of its members, so
  // the table exists. Takes no lock. Relaxed is enough: the caller got its reference after the
  // member was inserted, and that was after numberOf() had stored the address.
  static DedupHashTable& table(U16 number) noexcept {
    return *tables[number].load(std::memory_order_relaxed);
  }

 private:
  // 512 KiB of address space. Pages that are never written take no memory.
  static std::atomic<DedupHashTable*> tables[maxTables];
};

}  // namespace Dorn

#endif
