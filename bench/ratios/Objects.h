// How many different objects handles of any kind refer to.
#ifndef BENCH_RATIOS_OBJECTS_H
#define BENCH_RATIOS_OBJECTS_H

#include <unordered_set>
#include <vector>

namespace Bench {

// The address of what a handle refers to.
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
