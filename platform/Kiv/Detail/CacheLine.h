// A prefetch for writing. Needed by inline functions of public headers; not for direct use.
#ifndef KIV_DETAIL_CACHELINE_H
#define KIV_DETAIL_CACHELINE_H

#include "Kiv/Inline.h"

namespace Kiv {

// Requests the cache line of `at` in a writable state. A reference count that several cores change
// is read first and written right after; without this hint the line is transferred twice, first
// in a shared state for the read and then again for the write. `at` may be any address, even an
// invalid one: a prefetch never faults.
KIV_INLINE void prefetchToWrite(const void* at) noexcept {
#if defined(__x86_64__)
  // Without a compiler option for newer processors, __builtin_prefetch(at, 1) compiles to a
  // prefetch for reading. The oldest x86-64 processors execute PREFETCHW as a no-operation.
  asm volatile("prefetchw %0" : : "m"(*static_cast<const char*>(at)));
#else
  __builtin_prefetch(at, 1);
#endif
}

}  // namespace Kiv

#endif
