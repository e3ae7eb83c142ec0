// Type records and the framework allocator, which count the objects and bytes of each type that are
// alive.
//
// A record is constant-initialised and enters the list of records at its first allocation. So
// records need no order of initialisation and cost nothing before they are used.
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

// The record of one type. Records must be static objects: once listed, a record is never unlinked,
// so it must outlive the last allocation of the process.
//
// Threads: all operations are thread-safe. Each thread counts in memory of its own, because a
// counter that all threads write to would cost more than the allocation. Reading a total adds up
// the counters of all threads; the total is exact if no thread allocates or frees meanwhile.
class OV_EXPORT Type {
 public:
  // The number of a record that has not been used. Records get the numbers 1, 2, ... at first use.
  static constexpr U32 unlisted = 0;

  // A record named `name`, a literal that is not copied. Use constinit, so that it is usable before
  // main().
  constexpr explicit Type(const char* name) noexcept : name_(name) {}
  // Not copyable: the list holds the address of the record.
  Type(const Type&) = delete;
  // Not assignable: a record counts one type for good.
  Type& operator=(const Type&) = delete;

  // The name given to the constructor.
  std::string_view name() const noexcept { return name_; }
  // The number of objects alive. Takes a lock and visits every thread.
  U64 objects() const noexcept;
  // The number of bytes requested for the objects alive, without the overhead of the allocator.
  // Takes a lock and visits every thread.
  U64 bytes() const noexcept;

  // Counts one more object of `bytes` bytes. Called by the allocation functions below; to be called
  // directly only by code that allocates in another way.
  void allocated(std::size_t bytes) noexcept;
  // Counts one object less. `bytes` must be the number that was passed to allocated(); the thread
  // may be another one.
  void freed(std::size_t bytes) noexcept;

 private:
  friend OV_EXPORT void forEachType(const std::function<void(const Type&)>&);
  friend class ThreadCounts;

  // The fast path of the two functions above; see the source file for these four.
  inline void count(U64 objects, U64 bytes) noexcept;
  void countFirst(U64 objects, U64 bytes) noexcept;
  void countShared(U64 objects, U64 bytes) noexcept;
  void enlist() noexcept;

  const char* name_;
  std::atomic<U32> number_{unlisted};  // the index of the counters in each thread
  std::atomic<bool> enlisted_{false};  // whether some thread has begun to list the record
  // The counts that are in no living thread's memory: of threads that ended, of threads without
  // counters, and of types without a counter in each thread.
  std::atomic<U64> objects_{0};
  std::atomic<U64> bytes_{0};
  const Type* next_ = nullptr;  // in the list of records; constant once listed
};

// Calls `visit` for every type of which an object has ever been allocated, the last one listed
// first. Thread-safe; types that other threads list meanwhile may be missing. `visit` may allocate.
// An exception of `visit` ends the loop and reaches the caller.
OV_EXPORT void forEachType(const std::function<void(const Type&)>& visit);

// Prints one line "NAME: N objects, N bytes" for each type of forEachType(), for a log or a
// debugger.
OV_EXPORT void typesPrint(std::ostream& out);

// Allocates `size` octets from the pool (Kiv/Pool.h) and counts them as one object of `type`. The
// caller must release them with kivMemDealloc() and the same arguments. Throws std::bad_alloc, and
// then counts nothing.
OV_EXPORT void* kivMemAlloc(std::size_t size, Type& type);
// Releases memory of kivMemAlloc(), on any thread. `size` and `type` must be those of the
// allocation.
OV_EXPORT void kivMemDealloc(void* memory, std::size_t size, Type& type) noexcept;

// As kivMemAlloc(), for an object of `size` octets and an array of `arrayBytes` octets directly
// behind it, in one block. The object is counted as one of `type` and the array as one of
// `arrayType`; an array of 0 octets is not counted.
OV_EXPORT void* kivMemAllocWithArray(std::size_t size, Type& type, std::size_t arrayBytes,
                                     Type& arrayType);
// Releases memory of kivMemAllocWithArray(), on any thread. All arguments must be those of the
// allocation.
OV_EXPORT void kivMemDeallocWithArray(void* memory, std::size_t size, Type& type,
                                      std::size_t arrayBytes, Type& arrayType) noexcept;

}  // namespace Kiv

#endif
