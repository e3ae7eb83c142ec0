#include "Dorn/DedupTableNumbers.h"

#include <mutex>
#include <stdexcept>

namespace Dorn {
namespace {

// Guards all writes to the array, and nextNumber. Readers take no lock.
constinit std::mutex numbersMutex;
constinit U16 nextNumber = 0;

}  // namespace

constinit std::atomic<DedupHashTable*> DedupTableNumbers::tables[maxTables] = {};

// Continues the search behind the last number that was assigned, and wraps around at 65,536. So
// a freed number is used again as late as possible, and with few tables the first try succeeds.
U16 DedupTableNumbers::numberOf(DedupHashTable& table) {
  const std::lock_guard lock(numbersMutex);
  for (U32 tried = 0; tried < maxTables; ++tried) {
    const U16 number = nextNumber++;
    if (tables[number].load(std::memory_order_relaxed)) continue;
    tables[number].store(&table, std::memory_order_relaxed);
    return number;
  }
  throw std::length_error("Dorn: too many interning tables");
}

void DedupTableNumbers::numberDel(U16 number) noexcept {
  const std::lock_guard lock(numbersMutex);
  tables[number].store(nullptr, std::memory_order_relaxed);
}

}  // namespace Dorn
