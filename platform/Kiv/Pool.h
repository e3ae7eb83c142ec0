// Memory for small objects, of which there are millions: a slab allocator with magazines of each
// thread and a shared depot for each size class.
//
// A general allocator adds a header to each block and rounds its size up, which adds a third to an
// object of 24 octets. Here, blocks of one size class ("pieces") are adjacent in slabs of 8 KiB.
// Sizes are rounded up to a multiple of eight octets, so there are 32 size classes, up to 256
// octets; larger blocks come from operator new.
//
//   thread A: bins                thread B: bins            no lock: owner thread only
//   +--------+--------+----       +--------+--------+----
//   |  8     |  16    | ...       |  8     |  16    | ...   one bin for each size class
//   | first -> o -> o |           | first -> o      |       the magazine in use
//   | spare -> o -> o |           | spare           |       a full magazine, or none
//   +--------+--------+----       +--------+--------+----
//        |  ^ whole chains of pieces   |  ^
//        v  |                          v  |
//   +--------+--------+----
//   |  8     |  16    | ...   depots, one for each size class, each with a spin lock
//   +---|----+---|----+----
//       v        v
//    slab <-> slab <-> slab   the slabs of the class that have a free piece
//
//   a slab, aligned to 8 KiB:  | head | piece | piece | ...  never used yet | 16 octets unused |
//
// Ownership and locks: a piece in a bin belongs to the thread of the bin. A free piece in a slab,
// the heads of the slabs and their list belong to the depot and are guarded by its lock. A piece in
// use belongs to its user. The address of a piece, rounded down to 8 KiB, is that of its slab, so a
// full slab needs no list.
//
// Cost: an allocation or release takes a few instructions and no lock while the bin has pieces, or
// room. A bin contains at most two chains of 4 to 32 pieces each, half a KiB to two KiB in all. An
// empty or full bin moves one chain from or to the depot, under its lock. A slab without used
// pieces is returned to the general allocator, unless no other slab of its class has a free piece.
//
// Threads: all functions are thread-safe, and any thread may release a block that another thread
// allocated. A thread that ends gives its pieces to the depots. Blocks that it allocates or
// releases after that, in late destructors, are taken from the depots or returned to them directly.
// Depots are never destroyed, so objects with static storage may be released at any time of the
// process's end. The pool is usable in a child of fork(), because all depot locks are taken before
// the fork and released in both processes.
//
// Memory shortage: if no piece is free and no slab can be allocated, poolNew() throws
// std::bad_alloc and nothing has changed. A thread without memory for its bins uses the depots
// directly. poolDelete() allocates nothing that it needs, so it cannot fail.
//
// Under a sanitizer, or with the environment variable KIV_PLAIN_NEW (for valgrind), all memory
// comes from operator new, so that these tools see every single allocation and release.
#ifndef KIV_POOL_H
#define KIV_POOL_H

#include <cstddef>

#include "Kiv/Export.h"

namespace Kiv {

// The largest block in octets that comes from a slab; larger ones come from operator new.
inline constexpr std::size_t pooledMax = 256;

// The alignment in octets of every block. A class with a stricter alignment must not use the pool.
inline constexpr std::size_t pooledAlignment = 8;

// Allocates `size` octets, aligned to pooledAlignment and not initialised; 0 octets give a unique
// address. The caller must release them with poolDelete() and the same size. Throws std::bad_alloc.
OV_EXPORT void* poolNew(std::size_t size);

// Releases a block of poolNew(); null is allowed and does nothing. `size` must be that of the
// allocation, because no header remembers it.
OV_EXPORT void poolDelete(void* memory, std::size_t size) noexcept;

}  // namespace Kiv

#endif
