#include "KivStash/Detail/WaitBudget.h"

#include <thread>

namespace KivStash {

namespace {

constexpr std::chrono::seconds period{1};
constexpr std::chrono::milliseconds spentMax{100};

}  // namespace

// The budget is checked before the yield, so it is exceeded by one yield of each thread at most.
bool WaitBudget::yield() noexcept {
  const auto begin = Clock::now().time_since_epoch();
  if (begin - second_.load(std::memory_order_relaxed) >= period) {
    second_.store(begin, std::memory_order_relaxed);
    spent_.store({}, std::memory_order_relaxed);
  }
  const auto spent = spent_.load(std::memory_order_relaxed);
  if (spent >= spentMax) return false;
  std::this_thread::yield();
  spent_.store(spent + (Clock::now().time_since_epoch() - begin), std::memory_order_relaxed);
  return true;
}

}  // namespace KivStash
