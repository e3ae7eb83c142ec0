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
// they must outlive the process's last allocation.  Any thread: each counts for
// itself, and who asks adds up, exactly if nothing is allocated meanwhile.
class OV_EXPORT Type {
 public:
  // Records are numbered from 1 as they are used.
  static constexpr U32 unlisted = 0;

  constexpr explicit Type(const char* name) noexcept : name_(name) {}
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

  std::string_view name() const noexcept { return name_; }
  // Objects alive, and the bytes that were asked for them (the allocator's own
  // overhead comes on top).
  U64 objects() const noexcept;
  U64 bytes() const noexcept;

  void allocated(std::size_t bytes) noexcept;
  void freed(std::size_t bytes) noexcept;

 private:
  friend OV_EXPORT void forEachType(const std::function<void(const Type&)>&);
  friend class ThreadCounts;

  inline void count(U64 objects, U64 bytes) noexcept;
  void countFirst(U64 objects, U64 bytes) noexcept;
  void countShared(U64 objects, U64 bytes) noexcept;
  void enlist() noexcept;

  const char* name_;
  std::atomic<U32> number_{unlisted};
  std::atomic<bool> enlisted_{false};
  // What is in no living thread's own counts.
  std::atomic<U64> objects_{0};
  std::atomic<U64> bytes_{0};
  const Type* next_ = nullptr;
};

// Calls `visit` for every type that has ever been allocated, newest first.
OV_EXPORT void forEachType(const std::function<void(const Type&)>& visit);

// Prints a line a type: name, objects, bytes.
OV_EXPORT void typesPrint(std::ostream& out);

// The framework allocator (Kiv/Pool.h), counting.  Throws std::bad_alloc; `size` and `type` of the
// release are those of the allocation.
OV_EXPORT void* kivMemAlloc(std::size_t size, Type& type);
OV_EXPORT void kivMemDealloc(void* memory, std::size_t size, Type& type) noexcept;

// The same for an object and `arrayBytes` behind it, in one piece of memory; if they
// are any, they are counted as an array.
OV_EXPORT void* kivMemAllocWithArray(std::size_t size, Type& type, std::size_t arrayBytes,
                                     Type& arrayType);
OV_EXPORT void kivMemDeallocWithArray(void* memory, std::size_t size, Type& type,
                                      std::size_t arrayBytes, Type& arrayType) noexcept;

}  // namespace Kiv

#endif
