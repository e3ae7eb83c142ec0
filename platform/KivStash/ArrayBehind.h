// Objects that share one allocation with the elements of their array: one allocation per list
// instead of two, and a short list mostly fits one cache line.
//
//   allocateWithArray<Object, T>(bytes) returns
//
//   | Object                              | bytes                     |
//   | count, members ... | Vector<T> v    | elements of v             |   attached (attachedIs)
//   | count, members ... | v: size | elements of v ...               |   in place (inPlaceIs)
//                                ^ from here if v is the last member of Object
//
// In both forms the vector can no longer grow. See KivStash/Vector.h for the two forms.
//
// The allocation is counted in two records: sizeof(Object) under the type of the object, and
// `bytes` under the type of the array. Used by the lists of this library; other code hardly needs
// it.
#ifndef KIVSTASH_ARRAYBEHIND_H
#define KIVSTASH_ARRAYBEHIND_H

#include <cstddef>

#include "Kiv/Type.h"
#include "KivStash/Vector.h"

namespace KivStash {

// Returns uninitialised memory for an `Object` followed by `bytes` octets, which are counted as an
// array of `T`. The caller constructs the object in it, and releases it with destroyWithArray.
// Throws std::bad_alloc.
template <class Object, class T>
void* allocateWithArray(std::size_t bytes) {
  return Kiv::kivMemAllocWithArray(sizeof(Object), Object::kivType(), bytes, arrayType<T>());
}

// Destroys the object and releases its memory. `bytes` must be the number given to
// allocateWithArray, so this must not be replaced by `delete`.
template <class Object, class T>
void destroyWithArray(Object& object, std::size_t bytes) noexcept {
  object.~Object();
  Kiv::kivMemDeallocWithArray(&object, sizeof(Object), Object::kivType(), bytes, arrayType<T>());
}

}  // namespace KivStash

#endif
