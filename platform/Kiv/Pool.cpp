#include "Kiv/Pool.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "Kiv/Detail/SpinLock.h"
#include "Kiv/Private/AtFork.h"
#include "Kiv/Private/PerThread.h"
#include "Kiv/ThreadAnnotations.h"
#include "Kiv/Types.h"

// GCC defines a macro for each sanitizer, Clang answers __has_feature.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KIV_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define KIV_SANITIZED 1
#endif
#endif
#ifndef KIV_SANITIZED
#define KIV_SANITIZED 0
#endif

#if defined(__SANITIZE_ADDRESS__)
#define KIV_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KIV_ASAN 1
#endif
#endif
#ifdef KIV_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace Kiv {
namespace {

// Size classes are 8, 16, ..., 256 octets. A piece must have room for a Piece, the link of a free
// one.
constexpr std::size_t step = pooledAlignment;
constexpr std::size_t sizeClasses = pooledMax / step;

// The index of the smallest size class with room for `size` octets. Requires size <= pooledMax.
constexpr std::size_t indexOf(std::size_t size) noexcept {
  return size == 0 ? 0 : (size - 1) / step;
}
// The size of the pieces of a class.
constexpr std::size_t octetsOf(std::size_t index) noexcept { return (index + 1) * step; }

// A free piece. Only the link is used; the rest of its memory has no meaning.
struct Piece {
  Piece* next;
};

// The head of a slab. Its address is a multiple of slabOctets, so the slab of a piece is found by
// rounding the address of the piece down. All functions except make() and destroy() require the
// lock of the depot. The slab does not store its size class; callers pass it.
struct Slab {
  // 8 KiB, because on average half a slab per size class is unused. 16 octets less are requested:
  // malloc's chunk header fits there, so consecutive aligned slabs leave no gap.
  static constexpr std::size_t slabOctets = 8192;
  static constexpr std::size_t octets = slabOctets - 2 * sizeof(void*);

  static Slab* of(Piece* piece) noexcept {
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(piece) & ~(slabOctets - 1));
  }
  // Throws std::bad_alloc. Not by operator new, because its aligned form may round the size up to a
  // multiple of the alignment.
  static Slab* make() {
    void* memory = nullptr;
    if (posix_memalign(&memory, slabOctets, octets) != 0) throw std::bad_alloc();
    return new (memory) Slab;
  }
  static void destroy(Slab* slab) noexcept { std::free(slab); }

  // Whether take() can succeed.
  bool hasRoom(std::size_t size) const noexcept { return free || fresh + size <= octets; }
  // Takes a free piece, preferably one that was used before, since it may still be in the cache.
  // Requires hasRoom().
  Piece* take(std::size_t size) noexcept {
    ++used;
    if (free) return std::exchange(free, free->next);
    U8* const piece = reinterpret_cast<U8*>(this) + std::exchange(fresh, fresh + size);
    return reinterpret_cast<Piece*>(piece);
  }
  // Makes `piece` free again.
  void give(Piece* piece) noexcept {
    --used;
    piece->next = std::exchange(free, piece);
  }

  Slab* next = nullptr;  // in the depot's list, if the slab has room
  Slab* previous = nullptr;
  Piece* free = nullptr;  // pieces that were used and released
  // The offset in octets of the part that was never used; there is no piece list of it, so the
  // memory of a new slab is touched only as needed.
  std::size_t fresh = (sizeof(Slab) + step - 1) / step * step;
  U32 used = 0;  // pieces outside the slab: in use, or in a thread's bin
};

// The slabs of one size class that have room, in a doubly linked list. A slab that was full enters
// at the front and is filled up again first, so that the slabs behind it have a chance to become
// empty. Each depot has a cache line of its own, to avoid false sharing between the locks.
class alignas(64) Depot {
 public:
  // Stores a chain of up to `wanted` pieces in `first` and returns their number, at least one. It
  // may be fewer, because a second slab is not allocated for the rest. Throws std::bad_alloc, and
  // changes nothing, if there is no piece and no memory for a slab.
  U32 take(std::size_t size, U32 wanted, Piece*& first) {
    const std::lock_guard lock(*this);
    if (!slabs_) addSlab();
    Piece** end = &first;
    U32 count = 0;
    while (slabs_ && count < wanted) {
      *end = slabs_->take(size);
      end = &(*end)->next;
      ++count;
      if (!slabs_->hasRoom(size)) unlink(*slabs_);
    }
    *end = nullptr;
    return count;
  }

  // Returns a chain of pieces, which may be null, to their slabs. They may belong to different
  // slabs. Slabs that become empty are destroyed after the lock has been released.
  void give(std::size_t size, Piece* first) noexcept {
    if (!first) return;
    Slab* empty = nullptr;
    {
      const std::lock_guard lock(*this);
      while (first) {
        Piece* const piece = std::exchange(first, first->next);
        Slab& slab = *Slab::of(piece);
        if (!slab.hasRoom(size)) link(slab);
        slab.give(piece);
        // Keep the last slab of the list even if it is empty. Otherwise a user who allocates and
        // releases a single piece in turn would allocate and free a slab each time.
        if (slab.used == 0 && (slab.next || slab.previous)) {
          unlink(slab);
          slab.next = std::exchange(empty, &slab);
        }
      }
    }
    while (empty) Slab::destroy(std::exchange(empty, empty->next));
  }

  // These two make the depot a BasicLockable, for std::lock_guard.
  // For std::lock_guard, which has no annotations that Clang's check could use.
  void lock() noexcept KIV_NO_THREAD_SAFETY_ANALYSIS { lock_.lock(); }
  void unlock() noexcept KIV_NO_THREAD_SAFETY_ANALYSIS { lock_.unlock(); }

 private:
  // Adds a new slab to the list. Called with the lock, which is released during the allocation,
  // because malloc may take long and other threads would spin meanwhile. Another thread may add a
  // slab, too; then there are two, which is harmless. The lock is held again on return, also if
  // this throws std::bad_alloc.
  void addSlab() {
    unlock();
    Slab* slab = nullptr;
    try {
      slab = Slab::make();
    } catch (...) {
      lock();
      throw;
    }
    lock();
    link(*slab);
  }

  // Inserts a slab at the front of the list.
  void link(Slab& slab) noexcept {
    slab.previous = nullptr;
    slab.next = std::exchange(slabs_, &slab);
    if (slab.next) slab.next->previous = &slab;
  }
  // Removes a slab, at any position, from the list.
  void unlink(Slab& slab) noexcept {
    if (slab.next) slab.next->previous = slab.previous;
    (slab.previous ? slab.previous->next : slabs_) = slab.next;
  }

  SpinLock lock_;
  Slab* slabs_ = nullptr;
};

// Constant-initialised and without a destructor, so that objects may be allocated before main() and
// released after it, by destructors of any static object.
constinit Depot depots[sizeClasses];

// All depots as one lock, for fork().
struct AllDepots {
  static void lock() noexcept {
    for (Depot& depot : depots) depot.lock();
  }
  static void unlock() noexcept {
    for (Depot& depot : depots) depot.unlock();
  }
};
AllDepots allDepots;
const AtFork<allDepots> depotsAtFork;

// The free pieces of one size class that one thread has: two magazines, of which the second is full
// or absent. With one magazine, a thread that allocates and releases around its limit would go to
// the depot each time; with two, at most once for each `chain` operations.
struct Bin {
  Piece* first = nullptr;  // the magazine in use, linked
  U32 count = 0;           // pieces in it, less than `chain`
  U32 chain = 0;           // the size of a full magazine
  Piece* spare = nullptr;  // a full magazine, or null
};

// The bins of one thread, one for each size class. Only this thread uses them, so there is no lock.
class Bins {
 public:
  Bins() noexcept {
    for (std::size_t i = 0; i < sizeClasses; ++i) {
      bins_[i].chain = static_cast<U32>(std::clamp<std::size_t>(chainOctets / octetsOf(i), 4, 32));
    }
  }
  Bins(const Bins&) = delete;
  Bins& operator=(const Bins&) = delete;
  // Runs when the thread ends; its free pieces become available to the others.
  ~Bins() {
    for (std::size_t i = 0; i < sizeClasses; ++i) {
      depots[i].give(octetsOf(i), bins_[i].first);
      depots[i].give(octetsOf(i), bins_[i].spare);
    }
  }
  Bin& operator[](std::size_t index) noexcept { return bins_[index]; }

 private:
  // The octets of a full magazine, roughly: the number of pieces is limited to 4 at least and 32 at
  // most, so that large pieces do not need the lock each time and small ones are not hoarded.
  static constexpr std::size_t chainOctets = 512;

  Bin bins_[sizeClasses];
};

// Whether slabs are used at all; the environment is read once. A sanitizer sees more without them,
// but then nothing tests this source, so KIV_POOLED switches them on there. The fast paths need not
// ask: without slabs no thread ever gets bins, so every call ends in one of the two functions
// below.
bool isPooled() noexcept {
  static const bool pooled =
      KIV_SANITIZED ? std::getenv("KIV_POOLED") != nullptr : !std::getenv("KIV_PLAIN_NEW");
  return pooled;
}

// For AddressSanitizer: a free piece may be touched only by this source, except for its link. The
// sanitizer then reports a use of a released object although its memory is never given back to the
// system. Other builds compile these calls to nothing.
void pieceFreed([[maybe_unused]] Piece* piece, [[maybe_unused]] std::size_t index) noexcept {
#ifdef KIV_ASAN
  ASAN_POISON_MEMORY_REGION(piece + 1, octetsOf(index) - sizeof *piece);
#endif
}
void* pieceUsed(Piece* piece, [[maybe_unused]] std::size_t index) noexcept {
#ifdef KIV_ASAN
  ASAN_UNPOISON_MEMORY_REGION(piece, octetsOf(index));
#endif
  return piece;
}

// The slow path of poolNew() in a thread without bins. It serves this request from the depot and
// tries to create the bins for later ones. They stay absent if memory is short or if the thread is
// about to end; then each request takes this path.
[[gnu::noinline]] void* newWithoutBins(std::size_t size) {
  if (!isPooled()) return ::operator new(size);
  PerThread<Bins>::mine();
  const std::size_t index = indexOf(size);
  Piece* piece = nullptr;
  depots[index].take(octetsOf(index), 1, piece);
  return pieceUsed(piece, index);
}

// The slow path of poolDelete() in a thread without bins, likewise.
[[gnu::noinline]] void deleteWithoutBins(void* memory, std::size_t size) noexcept {
  if (!isPooled()) return ::operator delete(memory, size);
  PerThread<Bins>::mine();
  const std::size_t index = indexOf(size);
  auto* const piece = new (memory) Piece{nullptr};
  pieceFreed(piece, index);
  depots[index].give(octetsOf(index), piece);
}

// Fills the empty magazine in use: with the spare one, or from the depot. Throws std::bad_alloc,
// and leaves the bin as it is.
[[gnu::noinline]] void refill(Bin& bin, std::size_t index) {
  if (bin.spare) {
    bin.first = std::exchange(bin.spare, nullptr);
    bin.count = bin.chain;
  } else {
    bin.count = depots[index].take(octetsOf(index), bin.chain, bin.first);
  }
}

// Makes the full magazine in use the spare one and returns the former spare one to the depot.
[[gnu::noinline]] void retire(Bin& bin, std::size_t index) noexcept {
  depots[index].give(octetsOf(index), std::exchange(bin.spare, bin.first));
  bin.first = nullptr;
  bin.count = 0;
}

}  // namespace

void* poolNew(std::size_t size) {
  if (size > pooledMax) [[unlikely]]
    return ::operator new(size);
  Bins* const bins = PerThread<Bins>::ifMade();
  if (!bins) [[unlikely]]
    return newWithoutBins(size);
  const std::size_t index = indexOf(size);
  Bin& bin = (*bins)[index];
  if (!bin.first) [[unlikely]]
    refill(bin, index);
  --bin.count;
  return pieceUsed(std::exchange(bin.first, bin.first->next), index);
}

void poolDelete(void* memory, std::size_t size) noexcept {
  if (!memory) return;
  if (size > pooledMax) [[unlikely]]
    return ::operator delete(memory, size);
  Bins* const bins = PerThread<Bins>::ifMade();
  if (!bins) [[unlikely]]
    return deleteWithoutBins(memory, size);
  const std::size_t index = indexOf(size);
  Bin& bin = (*bins)[index];
  bin.first = new (memory) Piece{bin.first};
  pieceFreed(bin.first, index);
  if (++bin.count == bin.chain) [[unlikely]]
    retire(bin, index);
}

}  // namespace Kiv
