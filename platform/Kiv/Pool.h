// Memory for small objects, of which there are millions.
//
// A general allocator adds a header to each piece and rounds it up, which is a third
// of an object of 24 octets.  Here pieces of one size stand side by side in slabs and
// take their size, rounded up to eight octets; a slab that is empty goes back to the
// general allocator.
//
// Each thread keeps a few free pieces of each size, a kilobyte or two, and takes no
// lock while they last; more come and go in batches, under a lock a size.
//
// With sanitizers, or with KIV_PLAIN_NEW in the environment (for valgrind), all memory
// is plain operator new, so that they see each object come and go.
#ifndef KIV_POOL_H
#define KIV_POOL_H

#include <cstddef>

#include "Kiv/Export.h"

namespace Kiv {

// Pieces of up to so many octets come from slabs; others from operator new.
inline constexpr std::size_t pooledMax = 256;

// What memory from here is aligned to.
inline constexpr std::size_t pooledAlignment = 8;

// Any thread may give back what another one took, at any time: while other threads
// run, when a thread ends, and when the process does.  Throws std::bad_alloc.
OV_EXPORT void* poolNew(std::size_t size);
// `size` is that of the allocation.
OV_EXPORT void poolDelete(void* memory, std::size_t size) noexcept;

}  // namespace Kiv

#endif
