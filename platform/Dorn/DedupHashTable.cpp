#include "Dorn/DedupHashTable.h"

#include <utility>

#include "Kiv/Assert.h"

namespace Dorn {

KIV_OBJECT_DEFINE(DedupHashTable)
KIV_OBJECT_DEFINE(DedupHashTableUnorderedSet)

// Locks without atomic counts would not help: users copy and release references outside every lock.
DedupHashTable::DedupHashTable(bool threadSafe)
    : shell_(DedupTableShell::taken(threadSafe)),
      shards_(shell_.shards.get()),
      shardMask_(shell_.shardMask),
      threadSafe_(threadSafe) {
  KIV_ASSERT(!threadSafe || threadSafePointers,
             "!OvBgpGlobals::multiThreaded() || Kiv::VFPtrInterface::threadSafePointers",
             "Dorn/DedupHashTable");
}

DedupHashTable::~DedupHashTable() { shell_.giveBack(); }

DedupHandle::Ptr DedupHashTable::lookupByContent(const DedupContentHandle& key, U32 hash) const {
  Miss miss;
  DedupHandle::Ptr found = lookup<DedupHandle>(
      keyProbe_ ? keyProbe_(key) : hash,
      [&key](const DedupHandle& member) { return member.compareByContent(key); }, miss);
  if (found && found->hash() != hash) return nullptr;
  return found;
}

DedupHandle::Ptr DedupHashTable::dedup(DedupHandle::Ptr handle, U32 hash) {
  Miss miss;
  miss.mixed_ = mixed32(hash);
  return dedup(std::move(handle), miss);
}

// Takes the notification lock only for the insertion of an observed member, but before the
// shard's lock. So without a preceding lookup, a first probe finds out whether there is an
// insertion at all. After a lookup that has just missed, an insertion is likely, and the
// notification lock is taken at once.
DedupHandle::Ptr DedupHashTable::dedup(DedupHandle::Ptr handle, const Miss& miss) {
  Shard& shard = shardOf(miss.mixed_);
  if (miss.wasLookup() && shell_.isObserved(*handle)) return dedupObserved(shard, miss, handle);
  {
    const ShardLock lock(threadSafe_, shard);
    if (DedupHandle* const found = equalMember(shard, miss, *handle)) return referenceTo(found);
    if (!shell_.isObserved(*handle)) {
      insert(shard, miss.mixed_, *handle);
      return handle;
    }
  }
  return dedupObserved(shard, miss, handle);
}

// The member whose content equals that of `handle`, perhaps `handle` itself, or null. If the
// shard has had no insertion since the caller's lookup missed, there is none, and no probe is
// needed.
inline DedupHandle* DedupHashTable::equalMember(const Shard& shard, const Miss& miss,
                                                const DedupHandle& handle) {
  if (shard.insertions == miss.insertions_) return nullptr;
  return equalMemberAfter(shard, miss, handle);
}

DedupHandle* DedupHashTable::equalMemberAfter(const Shard& shard, const Miss& miss,
                                              const DedupHandle& handle) {
  return shard.buckets.find(miss.mixed_, [&handle](const DedupHandle* member) {
    return member == &handle || handle.compare(member);
  });
}

// The insertion of an observed member. Insertion and notice are one step under the notification
// lock. The shard is unlocked during the notice, so that the handler may use the table, and so
// other threads may find the member before the observer has heard of it. Probes again, because
// another thread may have inserted an equal member while this one waited for the lock.
DedupHandle::Ptr DedupHashTable::dedupObserved(Shard& shard, const Miss& miss,
                                               const DedupHandle::Ptr& handle) {
  const NotificationLock guard(shell_);
  {
    const ShardLock lock(threadSafe_, shard);
    if (DedupHandle* const found = equalMember(shard, miss, *handle)) return referenceTo(found);
    insert(shard, miss.mixed_, *handle);
  }
  delayAt(DelayPoint::notification);
  DedupHashTableLifeTimeNotifiee* const notifiee =
      shell_.isObserved(*handle) ? shell_.notifieeToTell() : nullptr;
  try {
    if (notifiee) notifiee->handleInsert(handle);
  } catch (...) {
    shell_.insertionUndo(shard, miss.mixed_, *handle);
    throw;
  }
  return handle;
}

// Allocates first, so that nothing has changed if there is no memory.
inline void DedupHashTable::insert(Shard& shard, U32 mixed, DedupHandle& handle) {
  KIV_ASSERT(!handle.isMember() && handle.dedupState() != DedupHandleState::rebuilt,
             "!isDeduped() && dedupState() != rebuilt", "Dorn/DedupHashTable");
  shard.buckets.reserveOne();
  shell_.insert(shard, mixed, handle);
}

// The order matters. The observer is set before the walk, so that an insertion that the walk
// misses sees the observer. `present` is declared outside the try block: if the registration
// fails, its references are given up only after notifieeStop(), so the observer is not notified
// of removals that this causes. A handler may end this registration or replace the observer;
// `registrations` then differs, and the rest of the walk is no longer ours.
void DedupHashTable::lifeTimeNotifieeIs(const DedupHashTableLifeTimeNotifiee::Ptr& notifiee) {
  const NotificationLock guard(shell_);
  notifieeStop();
  const U32 registration = ++shell_.notification.registrations;
  if (!notifiee) return;
  notifiee->table_ = this;
  shell_.notifieeSet(notifiee.ptr());
  std::vector<DedupHandle::Ptr> present;
  try {
    present = members();
    for (const DedupHandle::Ptr& member : present) {
      if (shell_.notification.registrations != registration) return;
      if (member->isDeduped() && shell_.isObserved(*member)) notifiee->handleInsert(member);
    }
  } catch (...) {
    if (shell_.notification.registrations == registration) notifieeStop();
    throw;
  }
}

// Tells the observer, if there is one, to stop, and unregisters it. During the handler, the
// observer stays registered: other threads then wait for the notification lock, so that no
// change happens behind its back while it walks the table. But it is notified of nothing more.
// The handler may give up the last reference to the observer, so this function owns one.
void DedupHashTable::notifieeStop() noexcept {
  const DedupHashTableLifeTimeNotifiee::Ptr notifiee(shell_.notification.notifiee);
  if (!notifiee || shell_.notification.stopping) return;
  shell_.notification.stopping = true;
  notifiee->handleNotificationStop(PtrConst(this));
  shell_.notification.stopping = false;
  notifiee->table_ = nullptr;
  if (shell_.notification.notifiee == notifiee.ptr()) shell_.notifieeSet(nullptr);
}

// Stops this observer, but not one that has been registered in its place.
void DedupHashTable::notifieeDel(const DedupHashTableLifeTimeNotifiee& notifiee) {
  const NotificationLock guard(shell_);
  if (shell_.notification.notifiee == &notifiee) notifieeStop();
}

U32 DedupHashTable::size() const {
  U32 total = 0;
  for (U32 i = 0; i <= shardMask_; ++i) {
    const Shard& shard = shards_[i];
    const ShardLock lock(threadSafe_, shard);
    total += shard.buckets.size();
  }
  return total;
}

// Other threads may insert during the walk, so the vector may have to grow under a shard lock.
std::vector<DedupHandle::Ptr> DedupHashTable::members() const {
  std::vector<DedupHandle::Ptr> all;
  all.reserve(size());
  for (U32 i = 0; i <= shardMask_; ++i) {
    const Shard& shard = shards_[i];
    const ShardLock lock(threadSafe_, shard);
    shard.buckets.forEach([&all](DedupHandle* member) { all.emplace_back(member); });
  }
  return all;
}

DedupHandle::Ptr DedupHashTable::memberFrom(const Shard& shard, U32& slot, U32& slotCount) const {
  const ShardLock lock(threadSafe_, shard);
  if (slotCount != shard.buckets.slotCount()) {
    slotCount = shard.buckets.slotCount();
    slot = 0;
  }
  while (slot < slotCount) {
    if (DedupHandle* const member = shard.buckets.memberAt(slot++)) return DedupHandle::Ptr(member);
  }
  return nullptr;
}

void DedupHashTable::dumpState(const Kiv::Ptr<const DumpContext>& context,
                               unsigned int indent) const {
  objDumpIndent(context, indent);
  objDumpPrintf(context, "DedupHashTable members #%u;\n", size());
}

// Runs twice. The first call takes a reference to the table, because the observer gets one while
// it is told to stop. When this reference is given up at the end, the count is zero again, and
// the second call destroys the table.
void DedupHashTable::zeroReferencesIs() noexcept {
  if (closing_) return PtrInterface::zeroReferencesIs();
  closing_ = true;
  const PtrConst self(this);
  {
    const NotificationLock guard(shell_);
    notifieeStop();
  }
  shell_.membersDetach();
}

Kiv::Ptr<DedupHashTable> DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(bool threadSafe) {
  return Kiv::Ptr<DedupHashTable>(new DedupHashTableUnorderedSet(threadSafe));
}

}  // namespace Dorn
