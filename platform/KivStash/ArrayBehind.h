// Objects that stand in one piece of memory with the elements of their array, which
// costs one allocation and, mostly, one cache line.
#ifndef KIVSTASH_ARRAYBEHIND_H
#define KIVSTASH_ARRAYBEHIND_H

#include <cstddef>

#include "Kiv/Type.h"
#include "KivStash/Vector.h"

namespace KivStash {

// Memory for an `Object` with `bytes` behind it, which are counted as an array of
// `T`.  Throws std::bad_alloc.
template <class Object, class T>
void* allocateWithArray(std::size_t bytes) {
  return Kiv::kivMemAllocWithArray(sizeof(Object), Object::kivType(), bytes, arrayType<T>());
}

// Destroys the object and gives the memory back.
template <class Object, class T>
void destroyWithArray(Object& object, std::size_t bytes) noexcept {
  object.~Object();
  Kiv::kivMemDeallocWithArray(&object, sizeof(Object), Object::kivType(), bytes, arrayType<T>());
}

}  // namespace KivStash

#endif
