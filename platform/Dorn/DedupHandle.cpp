#include "Dorn/DedupHandle.h"

#include "Dorn/Detail/DedupTableShell.h"

namespace Dorn {

constinit Kiv::RelaxedFlag dedupHandleDisableSmartPointerOperations{false};

bool DedupHandle::isDeduped() const noexcept { return isMember(); }

bool DedupHandle::everDeduped() const noexcept {
  return dedupState() != dedupHandleStateNeverDeduped();
}

void DedupHandle::assertIsDeduped() const noexcept {
  KIV_ASSERT(isDeduped(), "isDeduped()", "Dorn/DedupHandle");
}

bool DedupHandle::compareByContent(const DedupContentHandle&) const { return false; }

U32 DedupHandle::probeHash() const { return hash(); }

// Gives up a reference whose word was `seen` just before. Two cases need only one
// compare-and-exchange of the word: a user is left after that, or the handle is no member. The
// exchange fails if count, flag or state have changed since, and the loop decides anew. So the
// handle cannot enter a table between the look at its state and the change of its count.
//
// The release that may leave a member's idle count must not decrement here, because another
// thread could then revive, release and destroy the member before this thread has locked the
// shard. The table decides about such a release under the shard's lock. It may find that the
// handle has left the table meanwhile, and then it calls this function again.
U32 DedupHandle::referencesDecShared(U64 seen) const noexcept {
  while (staysInUse(seen) || !isMember(seen)) {
    if (isSaturated(seen)) return countOf(seen);
    if (!wordReplace(seen, seen - 1)) continue;
    const U32 left = countOf(seen - 1);
    if (left == 0) const_cast<DedupHandle*>(this)->zeroReferencesIs();
    return left;
  }
  return doRemoveFromDedupTable(tableOf(seen));
}

// The buckets may be read without a lock only if there is one thread, so with several threads
// only the word is prefetched.
void DedupHandle::releasePrefetch() const noexcept {
  referenceWordPrefetch();
  if (threadSafePointers) return;
  const U64 seen = wholeWord();
  if (staysInUse(seen) || !isMember(seen)) return;
  DedupTableShell::of(tableOf(seen)).prefetch(probeHash());
}

// The release that may be the last user's. The caller still owns the reference that it gives
// up here, so the object exists until the table holds the shard's lock. The table may be
// destroyed meanwhile, but its shell stays.
U32 DedupHandle::doRemoveFromDedupTable(U16 table) const noexcept {
  return DedupTableShell::of(table).memberRelease(const_cast<DedupHandle&>(*this));
}

}  // namespace Dorn
