// The base class of counted objects that belong to stores, and the allocator for arrays inside
// objects.
//
// The name is that of Kiv/PtrInterface.h on purpose: a type derives from the PtrInterface of the
// highest layer that it uses.
#ifndef KIVSTASH_PTRINTERFACE_H
#define KIVSTASH_PTRINTERFACE_H

#include <cstddef>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Type.h"

namespace KivStash {

// A reference-counted object (see Kiv/PtrInterface.h) with access to the framework's allocator.
class OV_EXPORT PtrInterface : public Kiv::PtrInterface {
 public:
  // Allocates `size` octets, counted under `type`. The memory is uninitialised and aligned as
  // Kiv/Pool.h says. Throws std::bad_alloc. Any thread.
  static void* kivMemAlloc(std::size_t size, Kiv::Type& type) {
    return Kiv::kivMemAlloc(size, type);
  }
  // Releases memory of kivMemAlloc. `size` and `type` must be those of the allocation, because the
  // allocator stores neither. Any thread.
  static void kivMemDealloc(void* memory, std::size_t size, Kiv::Type& type) noexcept {
    Kiv::kivMemDealloc(memory, size, type);
  }
};

}  // namespace KivStash

#endif
