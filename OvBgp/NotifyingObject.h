// What every factory of a shared class does.  Private to the library.
#ifndef OVBGP_NOTIFYINGOBJECT_H
#define OVBGP_NOTIFYINGOBJECT_H

namespace Routing::Bgp {

// A new object of class `T`, with notification switched on.  Throws std::bad_alloc.
template <class T, class... Args>
typename T::Ptr notifyingObject(const Args&... args) {
  typename T::Ptr object(new T(args...));
  object->hasNotificationActiveIs(true);
  return object;
}

}  // namespace Routing::Bgp

#endif
