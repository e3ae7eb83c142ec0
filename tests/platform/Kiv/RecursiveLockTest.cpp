#include "Kiv/Detail/RecursiveLock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <thread>

#include "Kiv/Types.h"

namespace {

// The owner yields in some rounds. So some waiting threads exhaust their spin phase and sleep, and
// others get the lock while they spin.
TEST(RecursiveLock, LetsInItsHolderAgainAndNobodyElse) {
  Kiv::RecursiveLock lock;
  U32 inside = 0;
  U32 most = 0;
  U32 total = 0;
  const auto work = [&] {
    for (U32 i = 0; i < 2000; ++i) {
      const std::lock_guard outer(lock);
      most = std::max(most, ++inside);
      {
        const std::lock_guard inner(lock);
        ++total;
      }
      if (i % 16 == 0) std::this_thread::yield();
      --inside;
    }
  };
  std::array threads{std::thread(work), std::thread(work), std::thread(work)};
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(1U, most);
  EXPECT_EQ(6000U, total);
}

}  // namespace
