#include "Dorn/DedupHashTable.h"

#include <new>
#include <utility>

#include "Dorn/DedupTableNumbers.h"
#include "Kiv/Assert.h"

namespace Dorn {
namespace {

// Enough that a few dozen threads seldom meet in one shard. A shard takes a cache line, so an
// empty table for several threads takes 16 KiB.
constexpr U32 threadSafeShards = 256;

}  // namespace

KIV_OBJECT_DEFINE(DedupHashTable)
KIV_OBJECT_DEFINE(DedupHashTableUnorderedSet)

// Holds the notification lock, if the table has locks. The lock is recursive, because the
// observer may use the table in its handlers. Members that this causes to be removed wait in
// the table's list (dropLater). The outermost guard drops them after it has released the lock,
// so that their destructors, which release further objects in tables below, delay nobody.
//
// Like ShardLock, this promises the lock to Clang's check in tables without locks, too.
class KIV_SCOPED_CAPABILITY DedupHashTable::NotificationLock {
 public:
  explicit NotificationLock(DedupHashTable& table) KIV_ACQUIRE(table.notification_.lock)
      : notification_(table.notification_), threadSafe_(table.threadSafe_) {
    if (threadSafe_) notification_.lock.lock();
    ++notification_.depth;
  }
  NotificationLock(const NotificationLock&) = delete;
  NotificationLock& operator=(const NotificationLock&) = delete;
  ~NotificationLock() KIV_RELEASE() {
    DedupHandle* first = nullptr;
    std::vector<DedupHandle*> others;
    if (--notification_.depth == 0) {
      first = std::exchange(notification_.firstDetached, nullptr);
      others.swap(notification_.otherDetached);
    }
    if (threadSafe_) notification_.lock.unlock();
    if (first) tableReferenceDrop(*first);
    for (DedupHandle* const member : others) tableReferenceDrop(*member);
  }

 private:
  Notification& notification_;
  const bool threadSafe_;
};

// Drops the table's reference to a removed member when the outermost holder has released the
// notification lock. If there is no memory to remember the member, the reference is dropped
// under the lock. This delays other threads but cannot deadlock: the destructor only releases
// objects in this table, whose lock is recursive, and in tables below.
inline void DedupHashTable::dropLater(DedupHandle& member) noexcept {
  if (!notification_.firstDetached) {
    notification_.firstDetached = &member;
    return;
  }
  try {
    notification_.otherDetached.push_back(&member);
  } catch (const std::bad_alloc&) {
    tableReferenceDrop(member);
  }
}

DedupHashTable::DedupHashTable(bool threadSafe)
    : shardMask_(threadSafe ? threadSafeShards - 1 : 0),
      number_(DedupTableNumbers::numberOf(*this)),
      threadSafe_(threadSafe) {
  try {
    shards_ = std::make_unique<Shard[]>(shardMask_ + 1);
  } catch (...) {
    DedupTableNumbers::numberDel(number_);
    throw;
  }
}

DedupHashTable::~DedupHashTable() { DedupTableNumbers::numberDel(number_); }

DedupHandle::Ptr DedupHashTable::lookupByContent(const DedupContentHandle& key, U32 hash) const {
  Miss miss;
  return lookup<DedupHandle>(
      hash, [&key](const DedupHandle& member) { return member.compareByContent(key); }, miss);
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
  if (miss.wasLookup() && isObserved(*handle)) return dedupObserved(shard, miss, handle);
  {
    const ShardLock lock(*this, shard);
    if (DedupHandle* const found = equalMember(shard, miss, *handle)) return referenceTo(found);
    if (!isObserved(*handle)) {
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
  const NotificationLock notification(*this);
  {
    const ShardLock lock(*this, shard);
    if (DedupHandle* const found = equalMember(shard, miss, *handle)) return referenceTo(found);
    insert(shard, miss.mixed_, *handle);
  }
  delayAt(DelayPoint::notification);
  DedupHashTableLifeTimeNotifiee* const notifiee = isObserved(*handle) ? notifieeToTell() : nullptr;
  try {
    if (notifiee) notifiee->handleInsert(handle);
  } catch (...) {
    insertionUndo(shard, miss.mixed_, *handle);
    throw;
  }
  return handle;
}

// Allocates first, so that nothing has changed if there is no memory. The writes to the handle
// are relaxed. Other threads find it only after they have taken the shard's lock, which this
// thread releases after the writes.
inline void DedupHashTable::insert(Shard& shard, U32 mixed, DedupHandle& handle) {
  KIV_ASSERT(!handle.isMember() && handle.dedupState() != DedupHandleState::rebuilt,
             "!isDeduped() && dedupState() != rebuilt", "Dorn/DedupHashTable");
  shard.buckets.reserveOne();
  handle.referenceAdd();
  handle.table_.store(number_, std::memory_order_relaxed);
  handle.dedupStateIs(DedupHandleState::deduped);
  shard.buckets.insert(mixed, &handle);
  ++shard.insertions;
}

// Removes a member that the observer has refused. Other threads may have found it already, so
// it is not destroyed: it lives on as a detached handle. The inserting thread still owns a
// reference, so the table's reference is not the last one.
void DedupHashTable::insertionUndo(Shard& shard, U32 mixed, DedupHandle& handle) noexcept {
  {
    const ShardLock lock(*this, shard);
    shard.buckets.erase(mixed, &handle);
    handle.dedupStateIs(DedupHandleState::detached);
  }
  handle.referenceSubtract();
}

// Gives up the caller's reference to `member`, which may be the last user's, and returns the
// number of references that are left. The caller has seen `member` as a member.
//
// The notification lock must be taken before the shard's lock. So a first look decides which
// way to take, and a second look under the shard's lock makes sure that no observer has been
// registered since. If one has, nothing has been done yet, and the release starts again.
U32 DedupHashTable::memberRelease(DedupHandle& member) noexcept {
  const U32 mixed = mixed32(member.probeHash());
  Shard& shard = shardOf(mixed);
  if (isObserved(member)) return memberReleaseObserved(shard, mixed, member);
  U32 left = 0;
  Release outcome = Release::observed;
  {
    const ShardLock lock(*this, shard);
    if (!isObserved(member)) outcome = releaseLocked(shard, mixed, member, left);
  }
  if (outcome == Release::observed) return memberReleaseObserved(shard, mixed, member);
  if (outcome == Release::leaves) tableReferenceDrop(member);
  if (outcome == Release::dies) member.zeroReferencesIs();
  return left;
}

// memberRelease() for an observed member: removal and notice are one step under the notification
// lock. The shard is unlocked during the notice. The table's reference keeps the member alive
// until the observer has heard of the removal and the notification lock has been released.
U32 DedupHashTable::memberReleaseObserved(Shard& shard, U32 mixed, DedupHandle& member) noexcept {
  U32 left = 0;
  Release outcome = Release::stays;
  {
    NotificationLock notification(*this);
    {
      const ShardLock lock(*this, shard);
      outcome = releaseLocked(shard, mixed, member, left);
    }
    if (outcome == Release::leaves) {
      delayAt(DelayPoint::notification);
      DedupHashTableLifeTimeNotifiee* const notifiee =
          isObserved(member) ? notifieeToTell() : nullptr;
      if (notifiee) notifiee->handleRemove(&member);
      dropLater(member);
    }
  }
  if (outcome == Release::dies) member.zeroReferencesIs();
  return left;
}

// Gives up the caller's reference and decides whether the member leaves. This is the only place
// where a member is found to be unused.
//
// `member` may have been removed since the caller saw it as a member: by insertionUndo(), or by
// a concurrent release that left only the references of table and notifier (the caller then
// gives up what was the notifier's). In that case nothing may be read from `member` after
// referenceSubtract(): the thread that removed it drops the table's reference without this lock
// and may destroy it.
//
// A member that stays a member may still be read, because the table's reference to it cannot be
// dropped under this lock.
inline DedupHashTable::Release DedupHashTable::releaseLocked(Shard& shard, U32 mixed,
                                                             DedupHandle& member,
                                                             U32& left) noexcept {
  const bool isMember = member.isMember();
  const U32 word = member.referenceSubtract();
  left = word & countMask;
  if (!isMember) return left == 0 ? Release::dies : Release::stays;
  if (left != DedupHandle::idleCount(word)) return Release::stays;
  delayAt(DelayPoint::unlink);
  shard.buckets.erase(mixed, &member);
  member.beingDetachedIs(true);
  member.dedupStateIs(DedupHandleState::detached);
  return Release::leaves;
}

// The end of a removal. The notifier or its former holders may still own references; else this
// destroys the member. Called without a shard lock, because destructors use tables.
inline void DedupHashTable::tableReferenceDrop(DedupHandle& member) noexcept {
  member.beingDetachedIs(false);
  if ((member.referenceSubtract() & countMask) == 0) member.zeroReferencesIs();
}

// The order matters. The observer is set before the walk, so that an insertion that the walk
// misses sees the observer. `present` is declared outside the try block: if the registration
// fails, its references are given up only after notifieeStop(), so the observer is not notified
// of removals that this causes. A handler may end this registration or replace the observer;
// `registrations` then differs, and the rest of the walk is no longer ours.
void DedupHashTable::lifeTimeNotifieeIs(const DedupHashTableLifeTimeNotifiee::Ptr& notifiee) {
  const NotificationLock notification(*this);
  notifieeStop();
  const U32 registration = ++notification_.registrations;
  if (!notifiee) return;
  notifiee->table_ = this;
  notifieeSet(notifiee.ptr());
  std::vector<DedupHandle::Ptr> present;
  try {
    present = members();
    for (const DedupHandle::Ptr& member : present) {
      if (notification_.registrations != registration) return;
      if (member->isDeduped() && isObserved(*member)) notifiee->handleInsert(member);
    }
  } catch (...) {
    if (notification_.registrations == registration) notifieeStop();
    throw;
  }
}

// Tells the observer, if there is one, to stop, and unregisters it. During the handler, the
// observer stays registered: other threads then wait for the notification lock, so that no
// change happens behind its back while it walks the table. But it is notified of nothing more.
// The handler may give up the last reference to the observer, so this function owns one.
void DedupHashTable::notifieeStop() noexcept {
  const DedupHashTableLifeTimeNotifiee::Ptr notifiee(notifiee_);
  if (!notifiee || notification_.stopping) return;
  notification_.stopping = true;
  notifiee->handleNotificationStop(PtrConst(this));
  notification_.stopping = false;
  notifiee->table_ = nullptr;
  notifieeSet(nullptr);
}

// Registers the observer, or none. Reads of observation_ without a lock are hints (isObserved),
// and reads under a shard lock are ordered by that lock. So relaxed would do; release costs
// nothing here.
void DedupHashTable::notifieeSet(DedupHashTableLifeTimeNotifiee* notifiee) noexcept {
  using Interest = DedupHashTableLifeTimeNotifiee::Interest;
  notifiee_ = notifiee;
  Observation observation = Observation::none;
  if (notifiee) {
    observation = notifiee->interest_ == Interest::all ? Observation::all : Observation::notable;
  }
  observation_.store(observation, std::memory_order_release);
}

U32 DedupHashTable::size() const {
  U32 total = 0;
  for (U32 i = 0; i <= shardMask_; ++i) {
    const Shard& shard = shards_[i];
    const ShardLock lock(*this, shard);
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
    const ShardLock lock(*this, shard);
    shard.buckets.forEach([&all](DedupHandle* member) { all.emplace_back(member); });
  }
  return all;
}

DedupHandle::Ptr DedupHashTable::memberFrom(const Shard& shard, U32& slot, U32& slotCount) const {
  const ShardLock lock(*this, shard);
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
    const NotificationLock notification(*this);
    notifieeStop();
  }
  membersDetach();
}

// Detaches all members before it drops the first reference. Dropping one may destroy a member
// that owns references to other members, and these must not look for this table any more. Only
// one thread uses the table now, so no lock is needed.
void DedupHashTable::membersDetach() noexcept {
  for (U32 i = 0; i <= shardMask_; ++i) {
    const Shard& shard = shards_[i];
    onlyThreadUses(shard);
    shard.buckets.forEach(
        [](DedupHandle* member) { member->dedupStateIs(DedupHandleState::detached); });
  }
  for (U32 i = 0; i <= shardMask_; ++i) {
    Shard& shard = shards_[i];
    onlyThreadUses(shard);
    DedupBuckets leaving;
    leaving.swap(shard.buckets);
    leaving.forEach([](DedupHandle* member) { tableReferenceDrop(*member); });
  }
}

Kiv::Ptr<DedupHashTable> DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(bool threadSafe) {
  return Kiv::Ptr<DedupHashTable>(new DedupHashTableUnorderedSet(threadSafe));
}

}  // namespace Dorn
