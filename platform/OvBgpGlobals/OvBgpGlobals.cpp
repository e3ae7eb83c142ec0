#include "OvBgpGlobals/OvBgpGlobals.h"

#include <atomic>

namespace OvBgpGlobals {
namespace {

// Relaxed: it publishes nothing but itself.
std::atomic<bool> isMultiThreaded{false};

}  // namespace

bool multiThreaded() noexcept { return isMultiThreaded.load(std::memory_order_relaxed); }

void multiThreadedIs(bool multiThreaded) noexcept {
  isMultiThreaded.store(multiThreaded, std::memory_order_relaxed);
}

}  // namespace OvBgpGlobals
