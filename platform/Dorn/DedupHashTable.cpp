#include "Dorn/DedupHashTable.h"

#include <new>
#include <utility>

#include "Dorn/DedupTableNumbers.h"
#include "Kiv/Assert.h"

namespace Dorn {
namespace {

// Enough that a few dozen threads seldom meet; a shard is one cache line.
constexpr U32 threadSafeShards = 256;

}  // namespace

KIV_OBJECT_DEFINE(DedupHashTable)
KIV_OBJECT_DEFINE(DedupHashTableUnorderedSet)

// Holds the notification lock. Members that are removed meanwhile, by whatever
// observers do, wait in the table's list; the outermost holder drops them once it
// has let go of the lock.
class DedupHashTable::NotificationLock {
 public:
  explicit NotificationLock(DedupHashTable& table)
      : notification_(table.notification_), threadSafe_(table.threadSafe_) {
    if (threadSafe_) notification_.lock.lock();
    ++notification_.depth;
  }
  NotificationLock(const NotificationLock&) = delete;
  NotificationLock& operator=(const NotificationLock&) = delete;
  ~NotificationLock() {
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

  // Without memory to remember it, the member goes at once: what it holds is in
  // tables below, whose locks may be taken under this one.
  void dropLater(DedupHandle& member) noexcept {
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

 private:
  Notification& notification_;
  const bool threadSafe_;
};

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

DedupHandle::Ptr DedupHashTable::dedup(DedupHandle::Ptr handle, const Miss& miss) {
  Shard& shard = shardOf(miss.mixed_);
  // What was looked for and not found is hardly there now.
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

// Looks again, as another thread may have been here meanwhile.
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

// The inserting thread still holds a reference, and others may have found the
// handle by now: it lives on for all of them, un-interned.
void DedupHashTable::insertionUndo(Shard& shard, U32 mixed, DedupHandle& handle) noexcept {
  {
    const ShardLock lock(*this, shard);
    shard.buckets.erase(mixed, &handle);
    handle.dedupStateIs(DedupHandleState::detached);
  }
  handle.referenceSubtract();  // never the last one
}

// Called by a thread that owns a reference to `member` and gives it up here.
U32 DedupHashTable::memberRelease(DedupHandle& member) noexcept {
  const U32 mixed = mixed32(member.probeHash());
  Shard& shard = shardOf(mixed);
  if (isObserved(member)) return memberReleaseObserved(shard, mixed, member);
  U32 left = 0;
  Release outcome = Release::stays;
  {
    const ShardLock lock(*this, shard);
    // Once more under the lock, so that an observer that has just come misses nothing.
    if (!isObserved(member)) {
      outcome = releaseLocked(shard, mixed, member, left);
    } else {
      left = ~U32{0};
    }
  }
  if (left == ~U32{0}) return memberReleaseObserved(shard, mixed, member);
  if (outcome == Release::leaves) tableReferenceDrop(member);
  if (outcome == Release::dies) member.zeroReferencesIs();
  return left;
}

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
      notification.dropLater(member);
    }
  }
  if (outcome == Release::dies) member.zeroReferencesIs();
  return left;
}

// The one place where a member is found to be unused. It may have left the table
// since its holder looked, if the insertion was undone, or if another release left but
// its notifier. Then it may be gone as soon as this reference is: the other one drops
// the table's without the lock.
inline DedupHashTable::Release DedupHashTable::releaseLocked(Shard& shard, U32 mixed,
                                                             DedupHandle& member,
                                                             U32& left) noexcept {
  const bool isMember = member.isMember();
  const U32 word = member.referenceSubtract();
  left = word & countMask;
  if (!isMember) return left == 0 ? Release::dies : Release::stays;
  if (left != DedupHandle::idleReferences(word)) return Release::stays;
  delayAt(DelayPoint::unlink);
  shard.buckets.erase(mixed, &member);
  member.beingDetachedIs(true);
  member.dedupStateIs(DedupHandleState::detached);
  return Release::leaves;
}

inline void DedupHashTable::tableReferenceDrop(DedupHandle& member) noexcept {
  member.beingDetachedIs(false);
  if ((member.referenceSubtract() & countMask) == 0) member.zeroReferencesIs();
}

void DedupHashTable::lifeTimeNotifieeIs(const DedupHashTableLifeTimeNotifiee::Ptr& notifiee) {
  const NotificationLock notification(*this);
  notifieeStop();
  const U32 registration = ++notification_.registrations;
  if (!notifiee) return;
  notifiee->table_ = this;
  // Before the walk: an insertion that it misses sees the observer.
  notifieeSet(notifiee.ptr());
  // Outlives the registration if that fails: what leaves with it must not be told.
  std::vector<DedupHandle::Ptr> present;
  try {
    present = members();
    for (const DedupHandle::Ptr& member : present) {
      // What is done on hearing of one may have ended this registration.
      if (notification_.registrations != registration) return;
      if (member->isDeduped() && isObserved(*member)) notifiee->handleInsert(member);
    }
  } catch (...) {
    if (notification_.registrations == registration) notifieeStop();
    throw;
  }
}

// Requires the notification lock. The observer may walk the table once more.
void DedupHashTable::notifieeStop() noexcept {
  // Held, as it may let itself go.
  const DedupHashTableLifeTimeNotifiee::Ptr notifiee(notifiee_.load(std::memory_order_relaxed));
  if (!notifiee || notification_.stopping) return;
  // Still registered, so that other threads wait; but it hears nothing more.
  notification_.stopping = true;
  notifiee->handleNotificationStop(PtrConst(this));
  notification_.stopping = false;
  notifiee->table_ = nullptr;
  notifieeSet(nullptr);
}

void DedupHashTable::notifieeSet(DedupHashTableLifeTimeNotifiee* notifiee) noexcept {
  using Interest = DedupHashTableLifeTimeNotifiee::Interest;
  notifiee_.store(notifiee, std::memory_order_release);
  Observation observation = Observation::none;
  if (notifiee) {
    observation = notifiee->interest_ == Interest::all ? Observation::all : Observation::notable;
  }
  observation_.store(observation, std::memory_order_release);
}

U32 DedupHashTable::size() const {
  U32 total = 0;
  for (U32 i = 0; i <= shardMask_; ++i) {
    const ShardLock lock(*this, shards_[i]);
    total += shards_[i].buckets.size();
  }
  return total;
}

std::vector<DedupHandle::Ptr> DedupHashTable::members() const {
  std::vector<DedupHandle::Ptr> all;
  all.reserve(size());
  for (U32 i = 0; i <= shardMask_; ++i) {
    const ShardLock lock(*this, shards_[i]);
    shards_[i].buckets.forEach([&all](DedupHandle* member) { all.emplace_back(member); });
  }
  return all;
}

DedupHandle::Ptr DedupHashTable::memberFrom(const Shard& shard, U32& place, U32& places) const {
  const ShardLock lock(*this, shard);
  if (places != shard.buckets.places()) {
    places = shard.buckets.places();
    place = 0;
  }
  while (place < places) {
    if (DedupHandle* const member = shard.buckets.memberAt(place++))
      return DedupHandle::Ptr(member);
  }
  return nullptr;
}

void DedupHashTable::dumpState(const Kiv::Ptr<const DumpContext>& context,
                               unsigned int indent) const {
  objDumpIndent(context, indent);
  objDumpPrintf(context, "DedupHashTable members #%u;\n", size());
}

// The reference taken here lets the observer hold the table while it is told to
// stop; when it goes, this function runs again and ends the table.
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

// All leave before the first is dropped: what that destroys may hold others.
void DedupHashTable::membersDetach() noexcept {
  for (U32 i = 0; i <= shardMask_; ++i) {
    shards_[i].buckets.forEach(
        [](DedupHandle* member) { member->dedupStateIs(DedupHandleState::detached); });
  }
  for (U32 i = 0; i <= shardMask_; ++i) {
    DedupBuckets leaving;
    leaving.swap(shards_[i].buckets);
    leaving.forEach([](DedupHandle* member) { tableReferenceDrop(*member); });
  }
}

Kiv::Ptr<DedupHashTable> DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(bool threadSafe) {
  return Kiv::Ptr<DedupHashTable>(new DedupHashTableUnorderedSet(threadSafe));
}

}  // namespace Dorn
