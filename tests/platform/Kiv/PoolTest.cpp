#include "Kiv/Pool.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace {

// A block of the pool, filled with a mark. Another user of the same memory would overwrite the
// mark.
class Piece {
 public:
  Piece(std::size_t size, U8 mark)
      : memory_(static_cast<U8*>(Kiv::poolNew(size))), size_(size), mark_(mark) {
    std::memset(memory_, mark_, size_);
  }
  Piece(Piece&& other) noexcept
      : memory_(std::exchange(other.memory_, nullptr)), size_(other.size_), mark_(other.mark_) {}
  Piece& operator=(Piece&& other) noexcept {
    std::swap(memory_, other.memory_);
    std::swap(size_, other.size_);
    std::swap(mark_, other.mark_);
    return *this;
  }
  ~Piece() { Kiv::poolDelete(memory_, size_); }

  bool isWhole() const {
    return std::all_of(memory_, memory_ + size_, [this](U8 octet) { return octet == mark_; });
  }
  bool isAligned() const {
    return reinterpret_cast<std::uintptr_t>(memory_) % Kiv::pooledAlignment == 0;
  }

 private:
  U8* memory_;
  std::size_t size_;
  U8 mark_;
};

// Allocates and releases pieces at random, and checks at each release that the mark is intact.
void churn(std::vector<Piece>& pieces, U32 seed, int steps) {
  std::mt19937 random(seed);
  for (int step = 0; step < steps; ++step) {
    if (pieces.size() < 2000 && random() % 5 < 3) {
      // Also sizes beyond pooledMax, from operator new.
      pieces.emplace_back(random() % (Kiv::pooledMax + 32), static_cast<U8>(random()));
      ASSERT_TRUE(pieces.back().isAligned());
    } else if (!pieces.empty()) {
      std::swap(pieces[random() % pieces.size()], pieces.back());
      ASSERT_TRUE(pieces.back().isWhole());
      pieces.pop_back();
    }
  }
}

TEST(Pool, GivesEachPieceToOneUserOnly) {
  std::vector<Piece> pieces;
  churn(pieces, 1, 50000);
  for (const Piece& piece : pieces) EXPECT_TRUE(piece.isWhole());
  Kiv::poolDelete(nullptr, 8);
}

// Three generations of threads. Each thread exchanges its pieces with those of the thread before,
// so pieces are released by other threads, also after their own thread has ended.
TEST(Pool, PiecesMayBeGivenBackByOtherThreads) {
  std::mutex mutex;
  std::vector<Piece> left;
  const auto work = [&](U32 seed) {
    std::vector<Piece> pieces;
    for (U32 round = 0; round < 20; ++round) {
      churn(pieces, seed + round, 2000);
      const std::lock_guard lock(mutex);
      pieces.swap(left);
    }
  };
  for (U32 generation = 0; generation < 3; ++generation) {
    std::vector<std::thread> threads;
    for (U32 i = 0; i < 3; ++i) threads.emplace_back(work, 100 * generation + 1000 * i);
    for (std::thread& thread : threads) thread.join();
  }
  for (const Piece& piece : left) EXPECT_TRUE(piece.isWhole());
}

// Allocates five megabytes and releases them in random order. A few slabs may remain, since each
// piece in the bins of this thread can keep its slab alive.
TEST(Pool, GivesMemoryBack) {
  const auto inUse = [] { return static_cast<double>(mallinfo2().uordblks); };
  std::vector<Piece> pieces;
  pieces.reserve(100000);
  const double before = inUse();
  for (int i = 0; i < 100000; ++i) pieces.emplace_back(48, U8{1});
  std::shuffle(pieces.begin(), pieces.end(), std::mt19937(7));
  pieces.clear();
  EXPECT_LT(inUse() - before, 500'000);
}

// A thread-local object that is constructed before the bins of the pool, and therefore destroyed
// after them. Its destructor uses the pool without bins.
struct LastToGo {
  ~LastToGo() {
    Kiv::poolDelete(memory, 24);
    Kiv::poolDelete(Kiv::poolNew(24), 24);
  }
  void* memory = nullptr;
};

TEST(Pool, ServesAThreadThatEnds) {
  for (int i = 0; i < 100; ++i) {
    std::thread([] {
      static thread_local LastToGo last;
      last.memory = Kiv::poolNew(24);
    }).join();
  }
}

TEST(Type, CountsExactlyWhateverThreadsDo) {
  static constinit Kiv::Type type{"PoolTest"};
  constexpr U32 threads = 4;
  constexpr U32 objects = 3000;
  std::vector<void*> made[threads];
  std::vector<std::thread> makers;
  for (auto& mine : made) {
    makers.emplace_back([&mine] {
      for (U32 i = 0; i < objects; ++i) mine.push_back(Kiv::kivMemAlloc(40, type));
    });
  }
  for (std::thread& maker : makers) maker.join();
  EXPECT_EQ(U64{threads} * objects, type.objects());
  EXPECT_EQ(U64{threads} * objects * 40, type.bytes());
  for (auto& mine : made) {
    for (void* const memory : mine) Kiv::kivMemDealloc(memory, 40, type);
    if (&mine == &made[1]) {
      EXPECT_EQ(U64{2} * objects, type.objects()) << "of others, by this thread";
    }
  }
  EXPECT_EQ(0U, type.objects());
  EXPECT_EQ(0U, type.bytes());
}

#ifdef __SANITIZE_ADDRESS__
// In a build with AddressSanitizer, the pool marks free pieces as not to be touched.
TEST(PoolDeathTest, UseOfAFreePieceIsReported) {
  if (!std::getenv("KIV_POOLED")) GTEST_SKIP() << "the sanitizer's own allocator is in use";
  auto* const piece = static_cast<U8*>(Kiv::poolNew(64));
  Kiv::poolDelete(piece, 64);
  EXPECT_DEATH(*static_cast<volatile U8*>(piece + 32) = 1, "use-after-poison");
}
#endif

}  // namespace
