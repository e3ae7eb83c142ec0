#include "Kiv/PtrInterface.h"

namespace Kiv {

constinit RelaxedFlag VFPtrInterface::threadSafePointers{false};

void VFPtrInterface::flagIs(U32 flag, bool on) const noexcept {
  if (threadSafePointers) {
    // One atomic operation on the whole word, because another thread may change the count
    // meanwhile. Acquire and release, as for the count: a thread that reads the flag together with
    // the count sees what this thread did before it changed the flag.
    if (on) {
      word_.fetch_or(flag, std::memory_order_acq_rel);
    } else {
      word_.fetch_and(~U64{flag}, std::memory_order_acq_rel);
    }
    return;
  }
  // Outside the thread-safe pointer mode nobody changes the word meanwhile; plain accesses are
  // cheaper.
  const U64 seen = word_.load(std::memory_order_relaxed);
  word_.store(on ? seen | flag : seen & ~U64{flag}, std::memory_order_relaxed);
}

// Puts the count into the middle of the saturated range. `now` is the word that this thread has
// just made, outside or inside that range; other threads may have changed it since. Whatever they
// add or subtract meanwhile is less than half of the range, because each thread changes the count
// by one before it comes here itself.
//
// Out of line, to keep the inlined callers small.
void VFPtrInterface::saturate(U64 now) const noexcept {
  constexpr U64 middle = (U64{saturatedReferences} + maxReferences) / 2;
  while (!wordReplace(now, (now & ~U64{maxReferences}) | middle)) {
  }
}

NotifieeList* PtrInterface::notifieeList() const noexcept { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool on) noexcept { flagIs(notificationActiveFlag, on); }

void PtrInterface::zeroReferencesIs() noexcept { delete this; }

}  // namespace Kiv
