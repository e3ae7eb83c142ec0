// What every factory of a shared class does.
#ifndef DORN_NOTIFYINGOBJECT_H
#define DORN_NOTIFYINGOBJECT_H

#include <concepts>

#include "Dorn/DedupHandle.h"

namespace Dorn {

// A new object of class `T`, with notification switched on.  Throws std::bad_alloc.
template <class T, class... Args>
typename T::Ptr notifyingObject(const Args&... args) {
  T* const made = new T(args...);
  if constexpr (std::derived_from<T, DedupHandle>) {
    // There are many of these, and none is shared by its constructor.
    made->beginNotifying();
    return typename T::Ptr(made, Kiv::adopt);
  } else {
    typename T::Ptr object(made);
    object->hasNotificationActiveIs(true);
    return object;
  }
}

}  // namespace Dorn

#endif
