// DedupTableShell: the part of an interning table that the release of a member needs.
#ifndef DORN_DETAIL_DEDUPTABLESHELL_H
#define DORN_DETAIL_DEDUPTABLESHELL_H

#include <atomic>
#include <memory>
#include <vector>

#include "Dorn/DedupBuckets.h"
#include "Dorn/DedupHandle.h"
#include "Dorn/DelayPoint.h"
#include "Kiv/Detail/RecursiveLock.h"
#include "Kiv/Detail/SpinLock.h"
#include "Kiv/Inline.h"
#include "Kiv/ThreadAnnotations.h"

namespace Dorn {

class DedupHashTableLifeTimeNotifiee;

// Buckets, locks and observer of one interning table (DedupHashTable.h).
//
// A member remembers its table by the number of the shell, which takes 16 bits where an address
// would take 64. Values of 24 bytes exist by the million, so this is a quarter of their size.
//
// A shell with locks is never destroyed. When its table is destroyed, the shell is kept, empty, and
// serves the next table with locks. Therefore a release can take the locks of a table that another
// thread is destroying. The release finds under the shard's lock that the handle is no member any
// more, and starts again. Then the handle is released like any counted object. A process has as
// many such shells as it had tables with locks at one time; each takes 16 KiB without its buckets.
// A shell without locks belongs to a table for one thread, which no release can meet, so it is
// destroyed with its table.
class OV_EXPORT DedupTableShell {
 public:
  // The most shells that a process can have.
  static constexpr U32 maxShells = 0x10000;

  // A part of the table, by hash. It fills a cache line of its own, so that threads in different
  // shards do not disturb each other (false sharing).
  struct alignas(64) Shard {
    // Guards the buckets, and the membership of the handles that hash to this shard.
    mutable Kiv::SpinLock lock;
    // The members.
    DedupBuckets buckets KIV_GUARDED_BY(lock);
    // Of the shard's whole life. Never decreases, so equal numbers mean that nothing has been
    // inserted in between.
    U64 insertions KIV_GUARDED_BY(lock) = 0;
  };

  // The state that the notification lock guards. The lock also keeps notices in the order of the
  // changes.
  struct Notification {
    // The observer to notify, or null.
    DedupHashTableLifeTimeNotifiee* notifiee KIV_GUARDED_BY(lock) = nullptr;
    // True while handleNotificationStop runs. The observer is then notified of nothing else.
    bool stopping KIV_GUARDED_BY(lock) = false;
    // How often the holder holds the lock.
    U32 depth KIV_GUARDED_BY(lock) = 0;
    // Counts the calls of lifeTimeNotifieeIs(), so that it sees that a handler has ended the
    // registration or replaced the observer.
    U32 registrations KIV_GUARDED_BY(lock) = 0;
    // Removed members, whose references are dropped when the outermost holder has released the
    // lock. Mostly there is at most one such member; the first needs no memory.
    DedupHandle* firstDetached KIV_GUARDED_BY(lock) = nullptr;
    // The further removed members.
    std::vector<DedupHandle*> otherDetached KIV_GUARDED_BY(lock);
    // Last, to avoid false sharing: waiting threads write to the lock's cache line.
    Kiv::RecursiveLock lock;
  };

  // The members that the observer is notified of: DedupHashTableLifeTimeNotifiee::Interest, or
  // none without an observer.
  enum class Observation : U8 { none, notable, all };

  // Holds a shard's lock if the table has locks. Clang's check does not follow a lock that is taken
  // under a condition. Therefore this guard promises the lock in every table. This is right,
  // because in a table for one thread that thread may do all that the lock would allow.
  class KIV_SCOPED_CAPABILITY ShardLock {
   public:
    // Takes the lock of `shard` if `threadSafe`.
    ShardLock(bool threadSafe, const Shard& shard) KIV_ACQUIRE(shard.lock)
        : lock_(threadSafe ? &shard.lock : nullptr) {
      delayAt(DelayPoint::lock);
      if (lock_) lock_->lock();
    }
    // Not copyable, because a lock is released once.
    ShardLock(const ShardLock&) = delete;
    // Not assignable, as it is not copyable.
    ShardLock& operator=(const ShardLock&) = delete;
    // Releases the lock.
    ~ShardLock() KIV_RELEASE() {
      if (lock_) lock_->unlock();
    }

   private:
    Kiv::SpinLock* const lock_;
  };

  // Holds the notification lock, if the table has locks. The lock is recursive, because the
  // observer may use the table in its handlers. Members that this causes to be removed wait in
  // the shell's list (dropLater). The outermost guard drops them after it has released the lock,
  // so that their destructors, which release further objects in tables below, delay nobody.
  //
  // Like ShardLock, this promises the lock to Clang's check in tables without locks, too.
  class KIV_SCOPED_CAPABILITY NotificationLock {
   public:
    // Takes the lock of the shell.
    explicit NotificationLock(DedupTableShell& shell) KIV_ACQUIRE(shell.notification.lock);
    // Not copyable, because a lock is released once.
    NotificationLock(const NotificationLock&) = delete;
    // Not assignable, as it is not copyable.
    NotificationLock& operator=(const NotificationLock&) = delete;
    // Releases the lock, and then drops what dropLater() has collected.
    ~NotificationLock() KIV_RELEASE();

   private:
    Notification& notification_;
    const bool threadSafe_;
  };

  // A shell that no table uses, with locks or without. Throws std::bad_alloc, and
  // std::length_error if the process has maxShells already. Any thread.
  static DedupTableShell& taken(bool threadSafe);
  // Gives back the shell of a table that is being destroyed. Requires: no members, no observer.
  void giveBack() noexcept;
  // The shell with this number. Takes no lock. Relaxed is enough. A thread that knows the number
  // has read it from a member, and the member was inserted after the shell had been stored.
  static DedupTableShell& of(U16 number) noexcept {
    return *shells[number].load(std::memory_order_relaxed);
  }

  // Not copyable: members refer to it by its number.
  DedupTableShell(const DedupTableShell&) = delete;
  // Not assignable, as it is not copyable.
  DedupTableShell& operator=(const DedupTableShell&) = delete;

  // Spreads a member's hash over all bits, since not every type's hash is good everywhere. The
  // low eight bits select the shard. The buckets use the upper 24, and want bit 9 set.
  static constexpr U32 mixed32(U32 hash) noexcept {
    return static_cast<U32>(U64{hash} * 0x9E3779B97F4A7C15 >> 32) | 0x200;
  }
  // The shard of a mixed hash.
  Shard& shardOf(U32 mixed) const noexcept { return shards[mixed & shardMask]; }

  // Whether insertion and removal of `member` need the notification lock. Without a lock, the
  // answer is a hint. If it is false under the member's shard lock, the caller may insert or
  // remove the member before it releases that lock: lifeTimeNotifieeIs() sets `observation` and
  // then walks the shards, each under its lock, so its walk sees that change. If it is true,
  // the caller takes the notification lock and looks again.
  bool isObserved(const DedupHandle& member) const noexcept {
    const Observation seen = observation.load(std::memory_order_acquire);
    return seen == Observation::all || (seen == Observation::notable && member.isNotable());
  }
  // The observer to notify, or null. An observer that is stopping is notified of nothing more.
  DedupHashTableLifeTimeNotifiee* notifieeToTell() const noexcept KIV_REQUIRES(notification.lock) {
    return notification.stopping ? nullptr : notification.notifiee;
  }
  // Registers the observer, or none with null.
  void notifieeSet(DedupHashTableLifeTimeNotifiee* notifiee) noexcept
      KIV_REQUIRES(notification.lock);

  // Makes `handle` a member: its reference for the table, its state, its slot. Requires
  // reserveOne() of the shard's buckets since the last insertion.
  KIV_INLINE void insert(Shard& shard, U32 mixed, DedupHandle& handle) noexcept
      KIV_REQUIRES(shard.lock);
  // Removes a member that the observer has refused. Other threads may have found it already, so
  // it is not destroyed, but stays as a detached handle. The calling thread owns a reference.
  void insertionUndo(Shard& shard, U32 mixed, DedupHandle& handle) noexcept;

  // Gives up the caller's reference to `member`, which may be the last user's, and returns the
  // number of references that are left. The caller has seen `member` as a member of this shell. If
  // the handle has left the shell meanwhile, the release starts again with its present state.
  U32 memberRelease(DedupHandle& member) noexcept;

  // Prefetches the home bucket of members with this hash, in a table for one thread.
  void prefetch(U32 hash) const noexcept;

  // Detaches all members and drops the table's references to them.
  void membersDetach() noexcept;

  // The kind of the shell: with locks or without. For good.
  const bool threadSafe;
  // The place of the shell in the list of all shells, by which members refer to it. For good.
  const U16 number;
  // The number of shards, a power of two, minus 1. For good.
  const U32 shardMask;
  // The shards. For good.
  const std::unique_ptr<Shard[]> shards;
  // The interest of the observer, for reads without the notification lock. Written under it.
  std::atomic<Observation> observation{Observation::none};
  // See Notification. Behind what every lookup reads, because waiting threads write to it.
  Notification notification;

 private:
  // The result of a release under the shard's lock.
  enum class Release : U8 {
    stays,     // a user is left, so nothing is left to do
    leaves,    // the member was removed; the caller drops the table's reference
    observed,  // nothing done yet: the notification lock must be taken first
    again,     // nothing done yet: the handle has left this shell, so the release starts again
  };

  DedupTableShell(bool hasLocks, U16 itsNumber);
  ~DedupTableShell() = default;

  static U16 freeNumber();

  U32 memberReleaseObserved(Shard& shard, U32 mixed, DedupHandle& member) noexcept;
  KIV_INLINE Release releaseLocked(Shard& shard, U32 mixed, DedupHandle& member, U32& left) noexcept
      KIV_REQUIRES(shard.lock);
  KIV_INLINE void dropLater(DedupHandle& member) noexcept KIV_REQUIRES(notification.lock);
  static void tableReferenceDrop(DedupHandle& member) noexcept;

  // 512 KiB of address space. Pages that are never written take no memory.
  static std::atomic<DedupTableShell*> shells[maxShells];
  // The next shell in the list of shells with locks that no table uses.
  DedupTableShell* nextFree_ = nullptr;
};

// One addition changes count, table number and state. The other fields of the word stay, and the
// fields that change are the caller's, because the caller has the only reference to a new handle,
// or the handle has left its table and can return only under this lock. The addition can be relaxed
// as far as other threads are concerned, because they find the handle only after they have taken
// the shard's lock, which this thread releases later.
inline void DedupTableShell::insert(Shard& shard, U32 mixed, DedupHandle& handle) noexcept {
  handle.memberIs(number);
  shard.buckets.insert(mixed, &handle);
  ++shard.insertions;
}

}  // namespace Dorn

#endif
