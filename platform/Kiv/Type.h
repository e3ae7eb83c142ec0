// Type records and the framework allocator: how many objects and bytes of each
// type are alive.
//
// A record is constant-initialised and lists itself on its first allocation, so
// records need no start-up order and cost nothing until they are used.
#ifndef KIV_TYPE_H
#define KIV_TYPE_H

#include <atomic>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string_view>

#include "Kiv/Export.h"
#include "Kiv/Types.h"

namespace Kiv {

// One tracked type.  Records are static objects: they are linked for good, so
// they must outlive the process's last allocation.  Any thread; while pointers
// are thread-safe (Kiv/PtrInterface.h) the counts are exact, too.
class OV_EXPORT Type {
 public:
  constexpr explicit Type(const char* name) noexcept : name_(name) {}
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

  std::string_view name() const noexcept { return name_; }
  // Objects alive, and the bytes that were asked for them (the allocator's own
  // overhead comes on top).
  U64 objects() const noexcept { return objects_.load(std::memory_order_relaxed); }
  U64 bytes() const noexcept { return bytes_.load(std::memory_order_relaxed); }

  void allocated(std::size_t bytes) noexcept;
  void freed(std::size_t bytes) noexcept;

 private:
  friend OV_EXPORT void forEachType(const std::function<void(const Type&)>&);

  void enlist() noexcept;

  // Records do not share a cache line: each is counted on by its own users.
  alignas(64) const char* name_;
  std::atomic<U64> objects_{0};
  std::atomic<U64> bytes_{0};
  std::atomic<bool> enlisted_{false};
  const Type* next_ = nullptr;
};

// Calls `visit` for every type that has ever been allocated, newest first.
OV_EXPORT void forEachType(const std::function<void(const Type&)>& visit);

// Prints a line a type: name, objects, bytes.
OV_EXPORT void typesPrint(std::ostream& out);

// The framework allocator.  Throws std::bad_alloc; `size` and `type` of the
// release are those of the allocation.
OV_EXPORT void* kivMemAlloc(std::size_t size, Type& type);
OV_EXPORT void kivMemDealloc(void* memory, std::size_t size, Type& type) noexcept;

}  // namespace Kiv

#endif
