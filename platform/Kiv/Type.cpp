#include "Kiv/Type.h"

#include <mutex>
#include <ostream>
#include <utility>

#include "Kiv/Detail/SpinLock.h"
#include "Kiv/Pool.h"
#include "Kiv/Private/AtFork.h"
#include "Kiv/Private/PerThread.h"

namespace Kiv {
namespace {

// Head of the singly linked list of all used records. Records are only added, at the head, so the
// list is read and extended without a lock.
constinit std::atomic<const Type*> newestType{nullptr};
constinit std::atomic<U32> newestNumber{Type::unlisted};

// Each thread has counters for the types numbered below this limit. Later types are counted in the
// shared counters of their record, which is slower but exact as well.
constexpr U32 numberedTypes = 128;
// The record of each number, so that a thread that ends can hand over its counts.
constinit std::atomic<Type*> numbered[numberedTypes] = {};

// Guards the list of ThreadCounts. Held while a total is computed, so that no thread can hand over
// its counts in between and be counted twice or not at all.
constinit SpinLock threadsLock;
const AtFork<threadsLock> threadsAtFork;

}  // namespace

// The counters of one thread, by number of the type: what the thread allocated minus what it freed,
// modulo 2^64. A thread that frees objects of other threads has "negative" counts; the sum over all
// threads is the number of objects alive.
class ThreadCounts {
 public:
  // Written by the owning thread only, with plain loads and stores. Atomic, because totals read it.
  struct Count {
    std::atomic<U64> objects{0};
    std::atomic<U64> bytes{0};
  };

  // Enters the list of all threads.
  ThreadCounts() noexcept {
    const std::lock_guard lock(threadsLock);
    next_ = std::exchange(first_, this);
    if (next_) next_->previous_ = this;
  }
  ThreadCounts(const ThreadCounts&) = delete;
  ThreadCounts& operator=(const ThreadCounts&) = delete;
  // Leaves the list and adds the counts of this thread to the shared counters of the records.
  ~ThreadCounts() {
    const std::lock_guard lock(threadsLock);
    if (next_) next_->previous_ = previous_;
    (previous_ ? previous_->next_ : first_) = next_;
    for (U32 i = 0; i < numberedTypes; ++i) {
      Type* const type = numbered[i].load(std::memory_order_acquire);
      if (type) type->countShared(get(counts_[i].objects), get(counts_[i].bytes));
    }
  }

  // The counters of one type. Requires number < numberedTypes.
  Count& operator[](U32 number) noexcept { return counts_[number]; }

  // The total of one counter: the shared one of the record, and those of all living threads.
  static U64 sum(const std::atomic<U64>& shared, U32 number, std::atomic<U64> Count::*of) noexcept {
    const std::lock_guard lock(threadsLock);
    U64 total = get(shared);
    for (const ThreadCounts* thread = first_; thread; thread = thread->next_) {
      if (number < numberedTypes) total += get(thread->counts_[number].*of);
    }
    return total;
  }

  // Relaxed: a counter orders nothing but itself.
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

// Adds -1 and -bytes, modulo 2^64.
void Type::freed(std::size_t bytes) noexcept { count(~U64{0}, ~U64{bytes} + 1); }

// The fast path: adds to the counters of this thread. The type may have no number yet, or one
// beyond the limit, and the thread may have no counters yet, or none any more; all these cases take
// the slow path. The single comparison covers 0 (not listed) by wrap-around.
inline void Type::count(U64 objects, U64 bytes) noexcept {
  const U32 number = number_.load(std::memory_order_relaxed);
  ThreadCounts* const mine = PerThread<ThreadCounts>::ifMade();
  if (number - 1 >= numberedTypes - 1 || !mine) [[unlikely]]
    return countFirst(objects, bytes);
  ThreadCounts::Count& count = (*mine)[number];
  count.objects.store(ThreadCounts::get(count.objects) + objects, std::memory_order_relaxed);
  count.bytes.store(ThreadCounts::get(count.bytes) + bytes, std::memory_order_relaxed);
}

// The slow path of count(): tries to create the counters of this thread for later calls, and counts
// this one in the shared counters.
[[gnu::noinline]] void Type::countFirst(U64 objects, U64 bytes) noexcept {
  PerThread<ThreadCounts>::mine();
  countShared(objects, bytes);
}

// Counts in the record itself. Lists the record before, since a record with counts must be found.
void Type::countShared(U64 objects, U64 bytes) noexcept {
  enlist();
  objects_.fetch_add(objects, std::memory_order_relaxed);
  bytes_.fetch_add(bytes, std::memory_order_relaxed);
}

// Lists the record and gives it a number, once. The exchange decides which thread does so; another
// thread may return before the record is numbered and simply counts in the shared counters until
// then.
void Type::enlist() noexcept {
  if (enlisted_.exchange(true, std::memory_order_relaxed)) return;
  const Type* newest = newestType.load(std::memory_order_relaxed);
  do {
    next_ = newest;
    // Release: a thread that reads the head with acquire sees `next_`.
  } while (!newestType.compare_exchange_weak(newest, this, std::memory_order_release,
                                             std::memory_order_relaxed));
  const U32 number = newestNumber.fetch_add(1, std::memory_order_relaxed) + 1;
  if (number >= numberedTypes) return;
  // First the record of the number, then the number: a thread that counts by number must be able to
  // hand over its counts when it ends.
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
