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

// Gives up a reference whose word was `seen` just before. While a user is left after that, one
// compare-and-exchange of the word does it: the exchange fails if count or notifier flag have
// changed since, and the loop decides anew. A release that could leave the idle count must not
// decrement here, because another thread could then revive, release and destroy the member
// before this thread has locked the shard. The table decides about such a release under the
// shard's lock.
//
// The exchange releases, so that the thread that destroys the object sees what this thread did
// with it. It need not acquire, since it never gives up the last reference.
U32 DedupHandle::referencesDecShared(U32 seen) const noexcept {
  while (staysInUse(seen)) {
    if (!threadSafePointers) return referenceSubtractPlain(seen) & countMask;
    if (referenceSubtractFrom(seen)) return (seen - 1) & countMask;
  }
  return doRemoveFromDedupTable();
}

// The buckets may be read without a lock only if there is one thread, so with several threads
// only the word is prefetched.
void DedupHandle::releasePrefetch() const noexcept {
  referenceWordPrefetch();
  if (threadSafePointers) return;
  const U32 seen = word();
  if ((seen & countMask) - 1 > idleCount(seen) || !isMember()) return;
  DedupTableNumbers::table(table_.load(std::memory_order_relaxed)).prefetch(probeHash());
}

// The release that may be the last user's. The caller still owns the reference that it gives
// up here, so the object exists until the table holds the shard's lock. A member's table
// exists, too, because destroying the table detaches all members first.
//
// The state "deduped" may be out of date (see DedupHashTable::releaseLocked), so the table
// checks it again under the lock. Every other state is final while several threads have the
// handle. Then this is the release of a plain counted object.
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
