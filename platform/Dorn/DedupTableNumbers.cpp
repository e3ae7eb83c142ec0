#include "Dorn/DedupTableNumbers.h"

#include <mutex>
#include <stdexcept>

namespace Dorn {
namespace {

// Guards who writes to the array, and where the search for a free place goes on.
constinit std::mutex numbersMutex;
constinit U16 nextNumber = 0;

}  // namespace

constinit std::atomic<DedupHashTable*> DedupTableNumbers::tables[maxTables] = {};

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
