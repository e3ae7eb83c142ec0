// What processors can be told of cache lines.
#ifndef KIV_CACHELINE_H
#define KIV_CACHELINE_H

#include "Kiv/Inline.h"

namespace Kiv {

// Says that `at` will be read and then written. Where other processors write it, too, its
// line is then fetched once, and not once to be read and once more to be written. Any
// address will do.
KIV_INLINE void prefetchToWrite(const void* at) noexcept {
#if defined(__x86_64__)
  // __builtin_prefetch would fetch it to read, as the oldest processors know nothing else;
  // they take this for nothing.
  asm volatile("prefetchw %0" : : "m"(*static_cast<const char*>(at)));
#else
  __builtin_prefetch(at, 1);
#endif
}

}  // namespace Kiv

#endif
