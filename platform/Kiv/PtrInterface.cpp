#include "Kiv/PtrInterface.h"

#include "Kiv/Assert.h"

namespace Kiv {

constinit bool VFPtrInterface::threadSafePointers = false;

void VFPtrInterface::flagIs(U32 flag, bool on) const noexcept {
  if (threadSafePointers) {
    // One atomic operation on the whole word, because another thread may change the count
    // meanwhile. Acquire and release, as for the count: a thread that reads the flag together with
    // the count sees what this thread did before it changed the flag.
    if (on) {
      word_.fetch_or(flag, std::memory_order_acq_rel);
    } else {
      word_.fetch_and(~flag, std::memory_order_acq_rel);
    }
    return;
  }
  // Outside the thread-safe pointer mode nobody changes the word meanwhile; plain accesses are
  // cheaper.
  const U32 seen = word_.load(std::memory_order_relaxed);
  word_.store(on ? seen | flag : seen & ~flag, std::memory_order_relaxed);
}

// Out of line, to keep the inlined referenceAdd() small.
void VFPtrInterface::referencesExhausted() noexcept {
  assertFailed("references() <= maxReferences", "Kiv/PtrInterface", __LINE__, __PRETTY_FUNCTION__);
}

NotifieeList* PtrInterface::notifieeList() const noexcept { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool on) noexcept { flagIs(notificationActiveFlag, on); }

void PtrInterface::zeroReferencesIs() noexcept { delete this; }

}  // namespace Kiv
