#include "Kiv/Type.h"

#include <new>
#include <ostream>

#include "Kiv/PtrInterface.h"

namespace Kiv {
namespace {

constinit std::atomic<const Type*> newestType{nullptr};

// Adds (or, by wrap-around, subtracts); a locked addition only where it is needed.
void countIs(std::atomic<U64>& count, U64 change) noexcept {
  if (VFPtrInterface::threadSafePointers) {
    count.fetch_add(change, std::memory_order_relaxed);
  } else {
    count.store(count.load(std::memory_order_relaxed) + change, std::memory_order_relaxed);
  }
}

}  // namespace

void Type::allocated(std::size_t bytes) noexcept {
  if (!enlisted_.load(std::memory_order_relaxed)) [[unlikely]]
    enlist();
  countIs(objects_, 1);
  countIs(bytes_, bytes);
}

void Type::freed(std::size_t bytes) noexcept {
  countIs(objects_, ~U64{0});
  countIs(bytes_, ~U64{bytes} + 1);
}

void Type::enlist() noexcept {
  if (enlisted_.exchange(true, std::memory_order_relaxed)) return;
  const Type* newest = newestType.load(std::memory_order_relaxed);
  do {
    next_ = newest;
    // Release: whoever reads the list from its head sees `next_`.
  } while (!newestType.compare_exchange_weak(newest, this, std::memory_order_release,
                                             std::memory_order_relaxed));
}

void forEachType(const std::function<void(const Type&)>& visit) {
  for (const Type* type = newestType.load(std::memory_order_acquire); type; type = type->next_) {
    visit(*type);
  }
}

void typesPrint(std::ostream& out) {
  forEachType([&out](const Type& type) {
    out << type.name() << ": " << type.objects() << " objects, " << type.bytes() << " bytes\n";
  });
}

void* kivMemAlloc(std::size_t size, Type& type) {
  void* const memory = ::operator new(size);
  type.allocated(size);
  return memory;
}

void kivMemDealloc(void* memory, std::size_t size, Type& type) noexcept {
  type.freed(size);
  ::operator delete(memory, size);
}

}  // namespace Kiv
