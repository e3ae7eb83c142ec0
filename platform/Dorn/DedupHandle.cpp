#include "Dorn/DedupHandle.h"

#include "Dorn/DedupHashTable.h"

namespace Dorn {

constinit bool dedupHandleDisableSmartPointerOperations = false;

DedupHandle::~DedupHandle() = default;

bool DedupHandle::isDeduped() const noexcept { return dedupState() == DedupHandleState::deduped; }

bool DedupHandle::everDeduped() const noexcept {
  return dedupState() != dedupHandleStateNeverDeduped();
}

void DedupHandle::assertIsDeduped() const noexcept {
  KIV_ASSERT(isDeduped(), "isDeduped()", "Dorn/DedupHandle");
}

bool DedupHandle::compareByContent(const DedupContentHandle&) const { return false; }

U32 DedupHandle::probeHash() const { return hash(); }

void DedupHandle::dedupStateIs(DedupHandleState state) noexcept {
  const U32 flags = state_.load(std::memory_order_relaxed) & beingDetachedBit;
  state_.store(flags | static_cast<U32>(state) << stateShift, std::memory_order_relaxed);
}

void DedupHandle::beingDetachedIs(bool being) noexcept {
  const U32 rest = state_.load(std::memory_order_relaxed) & ~beingDetachedBit;
  state_.store(being ? rest | beingDetachedBit : rest, std::memory_order_relaxed);
}

// The caller still owns the reference that it gives up here, so a member stays
// one until its table's lock is taken.
U32 DedupHandle::doRemoveFromDedupTable() const noexcept {
  auto* const self = const_cast<DedupHandle*>(this);
  if (isDeduped()) return table_->memberRelease(*self);
  const U32 left = referenceSubtract() & countMask;
  if (left == 0) self->zeroReferencesIs();
  return left;
}

}  // namespace Dorn
