#include "Dorn/Detail/DedupTableShell.h"

#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Kiv/Assert.h"
#include "Kiv/ObserverFailure.h"
#include "Kiv/Private/AtFork.h"

namespace Dorn {
namespace {

// Enough that a few dozen threads seldom meet in one shard. A shard takes a cache line, so an
// empty table for several threads takes 16 KiB.
constexpr U32 threadSafeShards = 256;

// Guards the writing to the list of all shells, the place where the search for a free number goes
// on, and the list of shells with locks that no table uses. Shells are taken and given back when
// tables are built and destroyed only.
constinit std::mutex shellsMutex;
const Kiv::AtFork<shellsMutex> shellsAtFork;
constinit U16 nextNumber = 0;
constinit DedupTableShell* freeShells = nullptr;

}  // namespace

constinit std::atomic<DedupTableShell*> DedupTableShell::shells[maxShells] = {};

DedupTableShell::DedupTableShell(bool hasLocks, U16 itsNumber)
    : threadSafe(hasLocks),
      number(itsNumber),
      shardMask(hasLocks ? threadSafeShards - 1 : 0),
      shards(std::make_unique<Shard[]>(shardMask + 1)) {
  // Where the upper bits of addresses carry a tag, buckets cannot store them. That is found out
  // here, when the first table is built, and not at some insertion.
  KIV_ASSERT(DedupBucket::fits(reinterpret_cast<const DedupHandle*>(shards.get())),
             "addresses of 48 bits", "Dorn/DedupHashTable");
}

// Requires shellsMutex.
U16 DedupTableShell::freeNumber() {
  for (U32 tried = 0; tried < maxShells; ++tried) {
    const U16 number = nextNumber++;
    if (!shells[number].load(std::memory_order_relaxed)) return number;
  }
  throw std::length_error("Dorn: too many interning tables");
}

DedupTableShell& DedupTableShell::taken(bool threadSafe) {
  const std::lock_guard lock(shellsMutex);
  if (threadSafe && freeShells) return *std::exchange(freeShells, freeShells->nextFree_);
  const U16 number = freeNumber();
  auto* const made = new DedupTableShell(threadSafe, number);
  shells[number].store(made, std::memory_order_relaxed);
  return *made;
}

void DedupTableShell::giveBack() noexcept {
  const std::lock_guard lock(shellsMutex);
  if (threadSafe) {
    nextFree_ = std::exchange(freeShells, this);
    return;
  }
  shells[number].store(nullptr, std::memory_order_relaxed);
  delete this;
}

DedupTableShell::NotificationLock::NotificationLock(DedupTableShell& shell)
    : notification_(shell.notification), threadSafe_(shell.threadSafe) {
  if (threadSafe_) notification_.lock.lock();
  ++notification_.depth;
}

DedupTableShell::NotificationLock::~NotificationLock() {
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

// Reads of `observation` without a lock are hints (isObserved), and reads under a shard lock are
// ordered by that lock. So relaxed would do; release costs nothing here.
void DedupTableShell::notifieeSet(DedupHashTableLifeTimeNotifiee* notifiee) noexcept {
  using Interest = DedupHashTableLifeTimeNotifiee::Interest;
  notification.notifiee = notifiee;
  Observation wanted = Observation::none;
  if (notifiee) {
    wanted = notifiee->interest() == Interest::all ? Observation::all : Observation::notable;
  }
  observation.store(wanted, std::memory_order_release);
}

// Buckets may be read without a lock only if there is one thread.
void DedupTableShell::prefetch(U32 hash) const noexcept KIV_NO_THREAD_SAFETY_ANALYSIS {
  if (threadSafe) return;
  const U32 mixed = mixed32(hash);
  shardOf(mixed).buckets.prefetch(mixed);
}

// The table's reference goes in the step that detaches the handle. If it went later, without the
// lock, it would count as a user's in a table that the handle enters meanwhile.
void DedupTableShell::insertionUndo(Shard& shard, U32 mixed, DedupHandle& handle) noexcept {
  const ShardLock lock(threadSafe, shard);
  const bool was = shard.buckets.erase(mixed, &handle);
  KIV_ASSERT(was, "buckets.erase( handle )", "Dorn/DedupHashTable");
  handle.memberDel();
}

// The notification lock must be taken before the shard's lock. So a first look decides which
// way to take, and a second look under the shard's lock makes sure that no observer has been
// registered since. If one has, nothing has been done yet, and the release starts again.
U32 DedupTableShell::memberRelease(DedupHandle& member) noexcept {
  const U32 mixed = mixed32(member.probeHash());
  Shard& shard = shardOf(mixed);
  if (isObserved(member)) return memberReleaseObserved(shard, mixed, member);
  U32 left = 0;
  Release outcome = Release::observed;
  {
    const ShardLock lock(threadSafe, shard);
    if (!isObserved(member)) outcome = releaseLocked(shard, mixed, member, left);
  }
  if (outcome == Release::leaves) tableReferenceDrop(member);
  if (outcome == Release::observed) return memberReleaseObserved(shard, mixed, member);
  if (outcome == Release::again) return member.referencesDecShared(member.wholeWord());
  return left;
}

// memberRelease() for an observed member: removal and notice are one step under the notification
// lock. The shard is unlocked during the notice. The table's reference keeps the member alive
// until the observer has heard of the removal and the notification lock has been released.
U32 DedupTableShell::memberReleaseObserved(Shard& shard, U32 mixed, DedupHandle& member) noexcept {
  U32 left = 0;
  Release outcome = Release::stays;
  {
    const NotificationLock guard(*this);
    {
      const ShardLock lock(threadSafe, shard);
      outcome = releaseLocked(shard, mixed, member, left);
    }
    if (outcome == Release::leaves) {
      delayAt(DelayPoint::notification);
      DedupHashTableLifeTimeNotifiee* const notifiee =
          isObserved(member) ? notifieeToTell() : nullptr;
      if (notifiee) Kiv::notifyOfRemoval([&] { notifiee->handleRemove(&member); });
      dropLater(member);
    }
  }
  if (outcome == Release::again) return member.referencesDecShared(member.wholeWord());
  return left;
}

// Gives up the caller's reference and decides whether the member leaves. This is the only place
// where a member is found to be unused.
//
// The handle may have left this shell since the caller saw it as a member: the insertion was
// undone, the table was destroyed, or another release left only the references of table and
// notifier (the caller then gives up what was the notifier's). The state changes under this lock
// only, so as long as the lock is held the answer stays. The count may be changed by other users
// meanwhile; the compare-and-exchange decides about the count and removes the member in one step.
inline DedupTableShell::Release DedupTableShell::releaseLocked(Shard& shard, U32 mixed,
                                                               DedupHandle& member,
                                                               U32& left) noexcept {
  U64 seen = member.wholeWord();
  bool leaves = false;
  do {
    if (!DedupHandle::isMemberOf(seen, number)) return Release::again;
    leaves = DedupHandle::isUnusedAfterRelease(seen);
  } while (!member.wordReplace(seen, leaves ? DedupHandle::detaching(seen) - 1 : seen - 1));
  left = static_cast<U32>(seen - 1) & DedupHandle::countMask;
  if (!leaves) return Release::stays;
  delayAt(DelayPoint::unlink);
  const bool was = shard.buckets.erase(mixed, &member);
  KIV_ASSERT(was, "buckets.erase( member )", "Dorn/DedupHashTable");
  return Release::leaves;
}

// Drops the table's reference to a removed member when the outermost holder has released the
// notification lock. If there is no memory to remember the member, the reference is dropped
// under the lock. This delays other threads but cannot deadlock: the destructor only releases
// objects in this table, whose lock is recursive, and in tables below.
inline void DedupTableShell::dropLater(DedupHandle& member) noexcept {
  if (!notification.firstDetached) {
    notification.firstDetached = &member;
    return;
  }
  try {
    notification.otherDetached.push_back(&member);
  } catch (const std::bad_alloc&) {
    tableReferenceDrop(member);
  }
}

// The end of a removal. The notifier or its former holders may still own references; else this
// destroys the member. Called without a shard lock, because destructors use tables.
void DedupTableShell::tableReferenceDrop(DedupHandle& member) noexcept {
  if ((member.detachedDrop() & DedupHandle::countMask) == 0) member.zeroReferencesIs();
}

// Detaches all members before the first is destroyed: a destructor may release other members of
// this table, which must not look for it any more. Each member loses its state and the table's
// reference in one step. A member that somebody still owns may be destroyed by its owner right
// after that, so it is taken out of the buckets at once. The others have no owner and wait.
void DedupTableShell::membersDetach() noexcept {
  for (U32 i = 0; i <= shardMask; ++i) {
    Shard& shard = shards[i];
    const ShardLock lock(threadSafe, shard);
    shard.buckets.eraseIf([](DedupHandle* member) { return member->memberDel() != 0; });
  }
  for (U32 i = 0; i <= shardMask; ++i) {
    DedupBuckets leaving;
    {
      Shard& shard = shards[i];
      const ShardLock lock(threadSafe, shard);
      leaving.swap(shard.buckets);
    }
    leaving.forEach([](DedupHandle* member) { member->zeroReferencesIs(); });
  }
}

}  // namespace Dorn
