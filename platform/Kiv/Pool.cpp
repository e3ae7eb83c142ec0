#include "Kiv/Pool.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "Kiv/PerThread.h"
#include "Kiv/SpinLock.h"
#include "Kiv/Types.h"

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

namespace Kiv {
namespace {

constexpr std::size_t step = pooledAlignment;
constexpr std::size_t sizes = pooledMax / step;

// Index of the smallest size that has room for `size` octets.
constexpr std::size_t indexOf(std::size_t size) noexcept {
  return size == 0 ? 0 : (size - 1) / step;
}
constexpr std::size_t octetsOf(std::size_t index) noexcept { return (index + 1) * step; }

// A free piece; the rest of it is nobody's.
struct Piece {
  Piece* next;
};

// The head of a slab, at an address that is a multiple of slabOctets, so that a piece
// shows where its slab is.
struct Slab {
  // Small, as half a slab of each size is unused on average.  The octets left out at
  // the end are those of the general allocator's own header: slabs get adjacent.
  static constexpr std::size_t slabOctets = 8192;
  static constexpr std::size_t octets = slabOctets - 2 * sizeof(void*);

  static Slab* of(Piece* piece) noexcept {
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(piece) & ~(slabOctets - 1));
  }
  // Not by operator new, which may round up what is aligned.
  static Slab* make() {
    void* memory = nullptr;
    if (posix_memalign(&memory, slabOctets, octets) != 0) throw std::bad_alloc();
    return new (memory) Slab;
  }
  static void destroy(Slab* slab) noexcept { std::free(slab); }

  bool hasRoom(std::size_t size) const noexcept { return free || fresh + size <= octets; }
  // Requires room.
  Piece* take(std::size_t size) noexcept {
    ++used;
    if (free) return std::exchange(free, free->next);
    U8* const piece = reinterpret_cast<U8*>(this) + std::exchange(fresh, fresh + size);
    return reinterpret_cast<Piece*>(piece);
  }
  void give(Piece* piece) noexcept {
    --used;
    piece->next = std::exchange(free, piece);
  }

  Slab* next = nullptr;  // among those of its size that have room
  Slab* previous = nullptr;
  Piece* free = nullptr;                                        // given back
  std::size_t fresh = (sizeof(Slab) + step - 1) / step * step;  // never taken, from here on
  U32 used = 0;
};

// The slabs of one size that have room.  What was full until now comes first and is
// filled up again, so that the others may get empty.
class alignas(64) Depot {
 public:
  // Chains up to `wanted` pieces, at least one, to `first`; says how many.
  U32 take(std::size_t size, U32 wanted, Piece*& first) {
    const std::lock_guard lock(*this);
    if (!slabs_) slabIs();
    Piece** end = &first;
    U32 count = 0;
    while (slabs_ && count < wanted) {
      *end = slabs_->take(size);
      end = &(*end)->next;
      ++count;
      if (!slabs_->hasRoom(size)) leave(*slabs_);
    }
    *end = nullptr;
    return count;
  }

  void give(std::size_t size, Piece* first) noexcept {
    Slab* empty = nullptr;
    {
      const std::lock_guard lock(*this);
      while (first) {
        Piece* const piece = std::exchange(first, first->next);
        Slab& slab = *Slab::of(piece);
        if (!slab.hasRoom(size)) enter(slab);
        slab.give(piece);
        // One may stay, lest a slab come and go with each piece.
        if (slab.used == 0 && (slab.next || slab.previous)) {
          leave(slab);
          slab.next = std::exchange(empty, &slab);
        }
      }
    }
    while (empty) Slab::destroy(std::exchange(empty, empty->next));
  }

  void lock() noexcept { lock_.lock(); }
  void unlock() noexcept { lock_.unlock(); }

 private:
  // Without the lock meanwhile, as the general allocator may take its time.
  void slabIs() {
    unlock();
    Slab* slab = nullptr;
    try {
      slab = Slab::make();
    } catch (...) {
      lock();
      throw;
    }
    lock();
    enter(*slab);
  }

  void enter(Slab& slab) noexcept {
    slab.previous = nullptr;
    slab.next = std::exchange(slabs_, &slab);
    if (slab.next) slab.next->previous = &slab;
  }
  void leave(Slab& slab) noexcept {
    if (slab.next) slab.next->previous = slab.previous;
    (slab.previous ? slab.previous->next : slabs_) = slab.next;
  }

  SpinLock lock_;
  Slab* slabs_ = nullptr;
};

// Never destroyed: objects may go as late as they like.
constinit Depot depots[sizes];

// What one thread has at hand of one size: some pieces, and once those were too many,
// a full chain of spare ones.
struct Bin {
  Piece* first = nullptr;
  U32 count = 0;
  U32 chain = 0;  // so many are a full chain
  Piece* spare = nullptr;
};

class Bins {
 public:
  Bins() noexcept {
    for (std::size_t i = 0; i < sizes; ++i) {
      bins_[i].chain = static_cast<U32>(std::clamp<std::size_t>(chainOctets / octetsOf(i), 4, 32));
    }
  }
  Bins(const Bins&) = delete;
  Bins& operator=(const Bins&) = delete;
  ~Bins() {
    for (std::size_t i = 0; i < sizes; ++i) {
      depots[i].give(octetsOf(i), bins_[i].first);
      depots[i].give(octetsOf(i), bins_[i].spare);
    }
  }
  Bin& operator[](std::size_t index) noexcept { return bins_[index]; }

 private:
  static constexpr std::size_t chainOctets = 512;

  Bin bins_[sizes];
};

bool isPooled() noexcept {
  static const bool pooled = !KIV_SANITIZED && !std::getenv("KIV_PLAIN_NEW");
  return pooled;
}

// Both: the thread gets its bins for the next time, if it can.
[[gnu::noinline]] void* newWithoutBins(std::size_t size) {
  if (!isPooled()) return ::operator new(size);
  PerThread<Bins>::mine();
  const std::size_t index = indexOf(size);
  Piece* piece = nullptr;
  depots[index].take(octetsOf(index), 1, piece);
  return piece;
}

[[gnu::noinline]] void deleteWithoutBins(void* memory, std::size_t size) noexcept {
  if (!isPooled()) return ::operator delete(memory, size);
  PerThread<Bins>::mine();
  const std::size_t index = indexOf(size);
  depots[index].give(octetsOf(index), new (memory) Piece{nullptr});
}

[[gnu::noinline]] void refill(Bin& bin, std::size_t index) {
  if (bin.spare) {
    bin.first = std::exchange(bin.spare, nullptr);
    bin.count = bin.chain;
  } else {
    bin.count = depots[index].take(octetsOf(index), bin.chain, bin.first);
  }
}

[[gnu::noinline]] void spareIs(Bin& bin, std::size_t index) noexcept {
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
  return std::exchange(bin.first, bin.first->next);
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
  if (++bin.count == bin.chain) [[unlikely]]
    spareIs(bin, index);
}

}  // namespace Kiv
