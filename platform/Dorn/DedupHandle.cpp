#include "Dorn/DedupHandle.h"

#include "Dorn/DedupHashTable.h"
#include "Dorn/DedupTableNumbers.h"

namespace Dorn {

constinit bool dedupHandleDisableSmartPointerOperations = false;

bool DedupHandle::isDeduped() const noexcept { return isMember(); }

bool DedupHandle::everDeduped() const noexcept {
  return dedupState() != dedupHandleStateNeverDeduped();
}

void DedupHandle::assertIsDeduped() const noexcept {
  KIV_ASSERT(isDeduped(), "isDeduped()", "Dorn/DedupHandle");
}

bool DedupHandle::compareByContent(const DedupContentHandle&) const { return false; }

U32 DedupHandle::probeHash() const { return hash(); }

// One compare-and-exchange while others use the handle.  The release that may leave
// only the table and the notifier goes to the table, which decides under its lock.
U32 DedupHandle::referencesDecShared(U32 seen) const noexcept {
  while (staysInUse(seen)) {
    if (!threadSafePointers) return referenceSubtractPlain(seen) & countMask;
    if (referenceSubtractFrom(seen)) return (seen - 1) & countMask;
  }
  return doRemoveFromDedupTable();
}

void DedupHandle::releasePrefetch() const noexcept {
  wordPrefetch();
  if (threadSafePointers) return;
  const U32 seen = word();
  if ((seen & countMask) - 1 > idleReferences(seen) || !isMember()) return;
  DedupTableNumbers::table(table_.load(std::memory_order_relaxed)).prefetch(probeHash());
}

// The caller still owns the reference that it gives up here, so a member stays
// one until its table's lock is taken.
U32 DedupHandle::doRemoveFromDedupTable() const noexcept {
  auto* const self = const_cast<DedupHandle*>(this);
  if (isMember()) {
    const U16 table = table_.load(std::memory_order_relaxed);
    return DedupTableNumbers::table(table).memberRelease(*self);
  }
  const U32 left = referenceSubtract() & countMask;
  if (left == 0) self->zeroReferencesIs();
  return left;
}

}  // namespace Dorn
