// An allocator that can be told to run out of memory. A test binary that links it has
// it in place of operator new.
#ifndef TESTS_SHORTAGE_FAILINGALLOCATOR_H
#define TESTS_SHORTAGE_FAILINGALLOCATOR_H

#include "Kiv/Types.h"

namespace Shortage {

// Allocations of this process that nobody has given back.
U64 allocationsAlive() noexcept;

// While it lives, one allocation of this thread fails: the `at`th, counted from 1 (0: none); or,
// if `forGood`, that one and all after it. One at a time.
class OutOfMemory {
 public:
  explicit OutOfMemory(U64 at, bool forGood = false) noexcept;
  OutOfMemory(const OutOfMemory&) = delete;
  OutOfMemory& operator=(const OutOfMemory&) = delete;
  ~OutOfMemory();

  // Whether an allocation was refused.
  bool happened() const noexcept;
  // Allocations of this thread since it began.
  U64 asked() const noexcept;
};

}  // namespace Shortage

#endif
