#include "Kiv/PtrInterface.h"

#include "Kiv/Assert.h"

namespace Kiv {

constinit bool VFPtrInterface::threadSafePointers = false;

void VFPtrInterface::flagIs(U32 flag, bool on) const noexcept {
  if (threadSafePointers) {
    // Acquire and release: the flag and the count beside it are read as one.
    if (on) {
      word_.fetch_or(flag, std::memory_order_acq_rel);
    } else {
      word_.fetch_and(~flag, std::memory_order_acq_rel);
    }
    return;
  }
  const U32 seen = word_.load(std::memory_order_relaxed);
  word_.store(on ? seen | flag : seen & ~flag, std::memory_order_relaxed);
}

void VFPtrInterface::referencesExhausted() noexcept {
  assertFailed("references() <= maxReferences", "Kiv/PtrInterface", __LINE__, __PRETTY_FUNCTION__);
}

NotifieeList* PtrInterface::notifieeList() const noexcept { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool on) noexcept { flagIs(notificationActiveFlag, on); }

void PtrInterface::zeroReferencesIs() noexcept { delete this; }

}  // namespace Kiv
