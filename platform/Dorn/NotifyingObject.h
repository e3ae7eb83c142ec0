// notifyingObject: the common part of the factories of shared classes.
#ifndef DORN_NOTIFYINGOBJECT_H
#define DORN_NOTIFYINGOBJECT_H

#include <concepts>

#include "Dorn/DedupHandle.h"

namespace Dorn {

// A new object of class `T`, constructed from `args`, with notifications of its changes switched
// on. Throws std::bad_alloc, and what the constructor throws.
//
// Interned classes (DedupHandle) take a short cut, in which one plain store sets count and flag.
// Factories make many of these objects, and their constructors share no reference, so nobody else
// has the object yet. Other objects can override hasNotificationActiveIs() or share themselves
// while they are constructed, so these are counted and switched on in the general way.
template <class T, class... Args>
typename T::Ptr notifyingObject(const Args&... args) {
  T* const made = new T(args...);
  if constexpr (std::derived_from<T, DedupHandle>) {
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
