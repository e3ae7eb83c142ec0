// An allocator that fails at a chosen allocation. It replaces operator new in every test binary
// that links it.
#ifndef TESTS_SHORTAGE_FAILINGALLOCATOR_H
#define TESTS_SHORTAGE_FAILINGALLOCATOR_H

#include "Kiv/Types.h"

namespace Shortage {

// The number of allocations of this process that have not been freed.
U64 allocationsAlive() noexcept;

// While the object exists, allocation number `at` of the calling thread fails, counted from 1;
// with `forGood`, all later ones fail, too. If `at` is 0, none fails. Only one object may exist
// in a thread.
class OutOfMemory {
 public:
  explicit OutOfMemory(U64 at, bool forGood = false) noexcept;
  OutOfMemory(const OutOfMemory&) = delete;
  OutOfMemory& operator=(const OutOfMemory&) = delete;
  ~OutOfMemory();

  // Whether an allocation has failed.
  bool happened() const noexcept;
  // The number of allocations that the thread has requested since the constructor.
  U64 asked() const noexcept;
};

}  // namespace Shortage

#endif
