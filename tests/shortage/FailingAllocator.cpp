#include "tests/shortage/FailingAllocator.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace Shortage {
namespace {

// The state of the thread's OutOfMemory object.
struct Plan {
  U64 left = 0;  // allocations up to and including the one that fails; 0: none fails
  bool forGood = false;
  bool happened = false;
  U64 asked = 0;
};

// Switches the library's pools off, so that every object is an allocation of its own that can
// fail.
[[maybe_unused]] const bool poolsAreOff = ::setenv("KIV_PLAIN_NEW", "1", 1) == 0;

constinit thread_local Plan plan;
constinit std::atomic<U64> alive{0};

bool isRefused() noexcept {
  ++plan.asked;
  if (plan.left == 0 || --plan.left != 0) return false;
  plan.happened = true;
  if (plan.forGood) plan.left = 1;
  return true;
}

void* allocated(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  alive.fetch_add(1, std::memory_order_relaxed);
  return memory;
}

void* allocate(std::size_t size) {
  if (isRefused()) throw std::bad_alloc();
  return allocated(std::malloc(size == 0 ? 1 : size));
}

// aligned_alloc requires a size that is a multiple of the alignment.
void* allocate(std::size_t size, std::align_val_t alignment) {
  if (isRefused()) throw std::bad_alloc();
  const auto boundary = static_cast<std::size_t>(alignment);
  return allocated(std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary));
}

void release(void* memory) noexcept {
  if (memory == nullptr) return;
  alive.fetch_sub(1, std::memory_order_relaxed);
  std::free(memory);
}

}  // namespace

U64 allocationsAlive() noexcept { return alive.load(std::memory_order_relaxed); }

OutOfMemory::OutOfMemory(U64 at, bool forGood) noexcept { plan = {at, forGood}; }
OutOfMemory::~OutOfMemory() { plan = {}; }
bool OutOfMemory::happened() const noexcept { return plan.happened; }
U64 OutOfMemory::asked() const noexcept { return plan.asked; }

}  // namespace Shortage

void* operator new(std::size_t size) { return Shortage::allocate(size); }
void* operator new[](std::size_t size) { return Shortage::allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return Shortage::allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return Shortage::allocate(size, alignment);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
  return Shortage::allocate(size);
} catch (const std::bad_alloc&) {
  return nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept try {
  return Shortage::allocate(size);
} catch (const std::bad_alloc&) {
  return nullptr;
}
void operator delete(void* memory) noexcept { Shortage::release(memory); }
void operator delete[](void* memory) noexcept { Shortage::release(memory); }
void operator delete(void* memory, std::size_t) noexcept { Shortage::release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Shortage::release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { Shortage::release(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { Shortage::release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  Shortage::release(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  Shortage::release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept { Shortage::release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Shortage::release(memory); }
