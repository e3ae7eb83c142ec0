#include "Kiv/Type.h"

#include <mutex>
#include <ostream>
#include <utility>

#include "Kiv/PerThread.h"
#include "Kiv/Pool.h"
#include "Kiv/SpinLock.h"

namespace Kiv {
namespace {

constinit std::atomic<const Type*> newestType{nullptr};
constinit std::atomic<U32> newestNumber{Type::unlisted};

// Types that are counted by each thread for itself, by number; if there are more, they
// are counted where all threads do.
constexpr U32 numberedTypes = 128;
constinit std::atomic<Type*> numbered[numberedTypes] = {};

constinit SpinLock threadsLock;

}  // namespace

// What one thread allocated less what it freed; the sum over all threads is what is
// alive.  A line that all threads write to would cost more than the allocation.
class ThreadCounts {
 public:
  // Written by its thread alone.
  struct Count {
    std::atomic<U64> objects{0};
    std::atomic<U64> bytes{0};
  };

  ThreadCounts() noexcept {
    const std::lock_guard lock(threadsLock);
    next_ = std::exchange(first_, this);
    if (next_) next_->previous_ = this;
  }
  ThreadCounts(const ThreadCounts&) = delete;
  ThreadCounts& operator=(const ThreadCounts&) = delete;
  // Leaves what it has to the types.
  ~ThreadCounts() {
    const std::lock_guard lock(threadsLock);
    if (next_) next_->previous_ = previous_;
    (previous_ ? previous_->next_ : first_) = next_;
    for (U32 i = 0; i < numberedTypes; ++i) {
      Type* const type = numbered[i].load(std::memory_order_acquire);
      if (type) type->countShared(get(counts_[i].objects), get(counts_[i].bytes));
    }
  }

  Count& operator[](U32 number) noexcept { return counts_[number]; }

  // Of all threads.
  static U64 sum(const std::atomic<U64>& shared, U32 number, std::atomic<U64> Count::*of) noexcept {
    const std::lock_guard lock(threadsLock);
    U64 total = get(shared);
    for (const ThreadCounts* thread = first_; thread; thread = thread->next_) {
      if (number < numberedTypes) total += get(thread->counts_[number].*of);
    }
    return total;
  }

  static U64 get(const std::atomic<U64>& count) noexcept {
    return count.load(std::memory_order_relaxed);
  }

 private:
  static constinit ThreadCounts* first_;

  Count counts_[numberedTypes];
  ThreadCounts* next_ = nullptr;
  ThreadCounts* previous_ = nullptr;
};

constinit ThreadCounts* ThreadCounts::first_ = nullptr;

U64 Type::objects() const noexcept {
  return ThreadCounts::sum(objects_, number_.load(std::memory_order_acquire),
                           &ThreadCounts::Count::objects);
}

U64 Type::bytes() const noexcept {
  return ThreadCounts::sum(bytes_, number_.load(std::memory_order_acquire),
                           &ThreadCounts::Count::bytes);
}

void Type::allocated(std::size_t bytes) noexcept { count(1, bytes); }

void Type::freed(std::size_t bytes) noexcept { count(~U64{0}, ~U64{bytes} + 1); }

// Adds, or, by wrap-around, subtracts.
inline void Type::count(U64 objects, U64 bytes) noexcept {
  const U32 number = number_.load(std::memory_order_relaxed);
  ThreadCounts* const mine = PerThread<ThreadCounts>::ifMade();
  if (number - 1 >= numberedTypes - 1 || !mine) [[unlikely]]
    return countFirst(objects, bytes);
  ThreadCounts::Count& count = (*mine)[number];
  count.objects.store(ThreadCounts::get(count.objects) + objects, std::memory_order_relaxed);
  count.bytes.store(ThreadCounts::get(count.bytes) + bytes, std::memory_order_relaxed);
}

// Both: the thread gets counts of its own for the next time, if it can.
[[gnu::noinline]] void Type::countFirst(U64 objects, U64 bytes) noexcept {
  PerThread<ThreadCounts>::mine();
  countShared(objects, bytes);
}

void Type::countShared(U64 objects, U64 bytes) noexcept {
  enlist();
  objects_.fetch_add(objects, std::memory_order_relaxed);
  bytes_.fetch_add(bytes, std::memory_order_relaxed);
}

void Type::enlist() noexcept {
  if (enlisted_.exchange(true, std::memory_order_relaxed)) return;
  const Type* newest = newestType.load(std::memory_order_relaxed);
  do {
    next_ = newest;
    // Release: whoever reads the list from its head sees `next_`.
  } while (!newestType.compare_exchange_weak(newest, this, std::memory_order_release,
                                             std::memory_order_relaxed));
  const U32 number = newestNumber.fetch_add(1, std::memory_order_relaxed) + 1;
  if (number >= numberedTypes) return;
  numbered[number].store(this, std::memory_order_release);
  number_.store(number, std::memory_order_release);
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
  void* const memory = poolNew(size);
  type.allocated(size);
  return memory;
}

void kivMemDealloc(void* memory, std::size_t size, Type& type) noexcept {
  type.freed(size);
  poolDelete(memory, size);
}

void* kivMemAllocWithArray(std::size_t size, Type& type, std::size_t arrayBytes, Type& arrayType) {
  void* const memory = poolNew(size + arrayBytes);
  type.allocated(size);
  if (arrayBytes != 0) arrayType.allocated(arrayBytes);
  return memory;
}

void kivMemDeallocWithArray(void* memory, std::size_t size, Type& type, std::size_t arrayBytes,
                            Type& arrayType) noexcept {
  if (arrayBytes != 0) arrayType.freed(arrayBytes);
  type.freed(size);
  poolDelete(memory, size + arrayBytes);
}

}  // namespace Kiv
