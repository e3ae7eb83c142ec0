// Counts the different objects that a contender holds, for handles of any type.
#ifndef BENCH_RATIOS_OBJECTS_H
#define BENCH_RATIOS_OBJECTS_H

#include <unordered_set>
#include <vector>

namespace Bench {

// The address of the object that a handle refers to: of a Kiv::Ptr, a std::shared_ptr or plain
// pointer, a counted pointer of the peers, or a flyweight.
template <class Handle>
const void* identity(const Handle& handle) {
  if constexpr (requires { handle.ptr(); }) {
    return handle.ptr();
  } else if constexpr (requires { *handle; }) {
    return &*handle;
  } else if constexpr (requires { static_cast<const void*>(handle.get()); }) {
    return handle.get();
  } else {
    return &handle.get();
  }
}

template <class Handle>
double differentObjects(const std::vector<Handle>& handles) {
  std::unordered_set<const void*> different;
  for (const Handle& handle : handles) different.insert(identity(handle));
  return static_cast<double>(different.size());
}

}  // namespace Bench

#endif
