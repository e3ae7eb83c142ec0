#include "OvBgpGlobals/OvBgpGlobals.h"

#include <atomic>

namespace OvBgpGlobals {
namespace {

// Relaxed accesses suffice, because no other data is published together with the flag.
std::atomic<bool> isMultiThreaded{false};

}  // namespace

bool multiThreaded() noexcept { return isMultiThreaded.load(std::memory_order_relaxed); }

void multiThreadedIs(bool multiThreaded) noexcept {
  isMultiThreaded.store(multiThreaded, std::memory_order_relaxed);
}

}  // namespace OvBgpGlobals
