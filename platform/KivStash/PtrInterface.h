// Allocation for objects, and for arrays inside objects, that may also be kept in
// a shared-memory store.
#ifndef KIVSTASH_PTRINTERFACE_H
#define KIVSTASH_PTRINTERFACE_H

#include <cstddef>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Type.h"

namespace KivStash {

class OV_EXPORT PtrInterface : public Kiv::PtrInterface {
 public:
  // The framework allocator, counted under `type`.  Throws std::bad_alloc; size
  // and type of the release are those of the allocation.
  static void* kivMemAlloc(std::size_t size, Kiv::Type& type) {
    return Kiv::kivMemAlloc(size, type);
  }
  static void kivMemDealloc(void* memory, std::size_t size, Kiv::Type& type) noexcept {
    Kiv::kivMemDealloc(memory, size, type);
  }
};

}  // namespace KivStash

#endif
