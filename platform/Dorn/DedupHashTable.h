// The interning table: equal contents, one object.
//
// Ownership. The table holds one reference on each member. Destroying the table
// (by one thread, when no other still uses it) detaches its members: handles
// that users still hold stay alive, un-interned, and release without it.
//
// Threads. A table made thread-safe may be used by any thread; it is split into
// shards, each with a lock that is held for one probe. How the meetings go:
//
// 1. Release against lookup. The decision to leave the table is made once, under
//    the member's shard lock, by a thread that still owns a reference: a release
//    that could reach the idle count locks first, then subtracts, then looks. A
//    lookup takes its reference under the same lock. So whoever comes first
//    wins: either the lookup revives the member, or it no longer finds it.
// 2. Order of notices. With an observer, insertion and handleInsert are one step
//    under the notification lock, and so are removal and handleRemove; no shard
//    lock is held while an observer runs. Lookups that hit never touch it.
// 3. Count and threshold. The flag that raises the idle count lives in the
//    reference word, so both are read in one load.
//
// The table's own reference to a removed member, and with it the member, goes
// after every lock has been released.
//
// A table made for one thread has one shard and takes no lock.
#ifndef DORN_DEDUPHASHTABLE_H
#define DORN_DEDUPHASHTABLE_H

#include <atomic>
#include <memory>
#include <vector>

#include "Dorn/DedupBuckets.h"
#include "Dorn/DedupHandle.h"
#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Dorn/DelayPoint.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/Inline.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/RecursiveLock.h"
#include "Kiv/SpinLock.h"

namespace Dorn {

class OV_EXPORT DedupHashTable : public Kiv::PtrInterface {
  KIV_OBJECT(DedupHashTable)

 public:
  // The member that `key` describes, or null. `hash` is what members of that
  // content probe with: their probeHash(), which is their hash() unless the type
  // says otherwise. One lock, one probe; builds nothing.
  DedupHandle::Ptr lookupByContent(const DedupContentHandle& key, U32 hash) const;

  // The same for callers who know the members' class, whose comparison with a
  // content no subclass replaces: it is no virtual call.
  template <class Handle>
  Kiv::Ptr<Handle> lookup(const DedupContentHandle& key, U32 hash) const {
    Miss miss;
    return lookup<Handle>(
        hash, [&key](const Handle& member) { return member.Handle::compareByContent(key); }, miss);
  }

  // The member of class `Handle` that `isWanted(const Handle&)` accepts among those of
  // this hash, where that takes but a few instructions: in a table for one thread, if it
  // stands where it is looked for first, as most do. Null says nothing: ask lookupElsewhere.
  // Here and below: `isWanted` is asked of some members of other hashes, too.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookupAtHome(U32 hash, const IsWanted& isWanted) const {
    if (threadSafe_) return nullptr;
    const U32 mixed = mixed32(hash);
    const auto wanted = memberThat<Handle>(isWanted);
    auto* const found = shards_[0].buckets.findAtHome(mixed, wanted);
    if (!found) return nullptr;
    found->referenceAdd();
    return Kiv::Ptr<Handle>(static_cast<Handle*>(found), Kiv::adopt);
  }

  // What a lookup did not find, for the insertion of what is then made: that probes
  // again only if others were inserted meanwhile.
  class Miss {
   private:
    friend class DedupHashTable;

    bool wasLookup() const noexcept { return insertions_ != ~U64{0}; }

    U32 mixed_ = 0;
    U64 insertions_ = ~U64{0};  // of the shard, when it was looked at; or more than ever
  };

  // The member of class `Handle` that `isWanted(const Handle&)` accepts among those of
  // this hash, or null, and then `miss` is set.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookup(U32 hash, const IsWanted& isWanted, Miss& miss) const {
    const U32 mixed = mixed32(hash);
    // Which has its count changed, as by other threads, if the table is for several.
    const auto wanted = [isThat = memberThat<Handle>(isWanted)](const DedupHandle* member) {
      member->wordPrefetch();
      return isThat(member);
    };
    const Shard& shard = shardOf(mixed);
    const ShardLock lock(*this, shard);
    return foundOrMissed<Handle>(miss, shard, mixed, shard.buckets.find(mixed, wanted));
  }

  // The same where lookupAtHome has just said null, and nothing was done since.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookupElsewhere(U32 hash, const IsWanted& isWanted,
                                              Miss& miss) const {
    if (threadSafe_) return lookup<Handle>(hash, isWanted, miss);
    const U32 mixed = mixed32(hash);
    const auto wanted = memberThat<Handle>(isWanted);
    const Shard& shard = shards_[0];
    return foundOrMissed<Handle>(miss, shard, mixed, shard.buckets.findElsewhere(mixed, wanted));
  }

  // Says that members of this hash will be looked up, inserted or released soon. With
  // several threads nothing comes of it, as buckets are looked at under a lock only.
  KIV_INLINE void prefetch(U32 hash) const noexcept {
    if (threadSafe_) return;
    const U32 mixed = mixed32(hash);
    shardOf(mixed).buckets.prefetch(mixed);
  }

  // The member equal to `handle`; `handle` itself becomes one if there is none.
  // All handles of one table are of one type. Throws std::bad_alloc, or what the
  // observer's handleInsert throws, and leaves the table as it was. Requires: the
  // handle is in no other table and, unless it is in this one, no other thread has it
  // (some may, after an insertion that an observer's exception ended).
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle) {
    const U32 hash = handle->probeHash();
    return dedup(std::move(handle), hash);
  }
  // The same for callers who know what the handle probes with, or have looked it up in
  // this table.
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle, U32 hash);
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle, const Miss& miss);

  // Observes the table from now on; a former observer is stopped first. Members
  // that are there already are announced. Null stops the observer.
  void lifeTimeNotifieeIs(const DedupHashTableLifeTimeNotifiee::Ptr& notifiee);
  void lifeTimeNotifieeDel() { lifeTimeNotifieeIs(nullptr); }

  // Members now.
  U32 size() const;
  // All members, each with a reference that keeps it: for walks that may change
  // the table in any way.
  std::vector<DedupHandle::Ptr> members() const;
  // Visits members one by one, with a reference and without a lock, and allocates
  // nothing. `visit` may change the table: who is there all the time is visited, once
  // more for each time that the table grows meanwhile.
  template <class Visit>
  void membersVisit(const Visit& visit) const {
    for (U32 i = 0; i <= shardMask_; ++i) {
      U32 place = 0;
      U32 places = 0;
      while (const DedupHandle::Ptr member = memberFrom(shards_[i], place, places)) visit(member);
    }
  }

  // Prints one line: how many members there are.
  void dumpState(const Kiv::Ptr<const DumpContext>& context, unsigned int indent) const;

  void zeroReferencesIs() noexcept override;
  ~DedupHashTable() override;

 protected:
  explicit DedupHashTable(bool threadSafe);

 private:
  friend class DedupHandle;
  friend class DedupHashTableLifeTimeNotifiee;
  class NotificationLock;

  struct alignas(64) Shard {
    mutable Kiv::SpinLock lock;
    DedupBuckets buckets;
    U64 insertions = 0;
  };

  // What the notification lock guards, besides the order of notices.
  struct Notification {
    bool stopping = false;  // the observer is being told to stop
    U32 depth = 0;
    U32 registrations = 0;  // tells an end or a new beginning of observation
    // Removed; dropped once the lock is free.  Seldom more than one.
    DedupHandle* firstDetached = nullptr;
    std::vector<DedupHandle*> otherDetached;
    // Last, as those who wait for it write to its line, and every lookup reads that of
    // the shards' address.
    Kiv::RecursiveLock lock;
  };

  // Holds a shard's lock, if the table has locks.
  class ShardLock {
   public:
    ShardLock(const DedupHashTable& table, const Shard& shard)
        : lock_(table.threadSafe_ ? &shard.lock : nullptr) {
      delayAt(DelayPoint::lock);
      if (lock_) lock_->lock();
    }
    ShardLock(const ShardLock&) = delete;
    ShardLock& operator=(const ShardLock&) = delete;
    ~ShardLock() {
      if (lock_) lock_->unlock();
    }

   private:
    Kiv::SpinLock* const lock_;
  };

  enum class Release : U8 { stays, leaves, dies };
  enum class Observation : U8 { none, notable, all };

  // Spreads a member's hash over all bits: the low eight choose the shard, the others
  // are for its buckets, and not every type's hash is good in both. Bit 9 is always
  // set, as the buckets want it.
  static constexpr U32 mixed32(U32 hash) noexcept {
    return static_cast<U32>(U64{hash} * 0x9E3779B97F4A7C15 >> 32) | 0x200;
  }
  Shard& shardOf(U32 mixed) const noexcept { return shards_[mixed & shardMask_]; }
  // Requires the notification lock.
  DedupHashTableLifeTimeNotifiee* notifieeToTell() const noexcept {
    return notification_.stopping ? nullptr : notifiee_.load(std::memory_order_relaxed);
  }
  // Whether an observer has to hear of `member`.
  bool isObserved(const DedupHandle& member) const noexcept {
    const Observation observation = observation_.load(std::memory_order_acquire);
    return observation == Observation::all ||
           (observation == Observation::notable && member.isNotable());
  }
  // Requires the notification lock.
  void notifieeSet(DedupHashTableLifeTimeNotifiee* notifiee) noexcept;

  // What buckets ask of a member, by what is asked of a `Handle`; ends with `isWanted`.
  template <class Handle, class IsWanted>
  static auto memberThat(const IsWanted& isWanted) noexcept {
    return [&isWanted](const DedupHandle* member) {
      return isWanted(static_cast<const Handle&>(*member));
    };
  }
  // The reference to what was found in the shard, or `miss` set. Requires its lock.
  template <class Handle>
  KIV_INLINE static Kiv::Ptr<Handle> foundOrMissed(Miss& miss, const Shard& shard, U32 mixed,
                                                   DedupHandle* found) {
    if (found) {
      found->referenceAdd();
    } else {
      miss.mixed_ = mixed;
      miss.insertions_ = shard.insertions;
    }
    return Kiv::Ptr<Handle>(static_cast<Handle*>(found), Kiv::adopt);
  }
  // A new reference to a member, or null. Requires the lock of its shard.
  static DedupHandle::Ptr referenceTo(DedupHandle* member) noexcept {
    if (member) member->referenceAdd();
    return DedupHandle::Ptr(member, Kiv::adopt);
  }

  KIV_INLINE void insert(Shard& shard, U32 mixed, DedupHandle& handle);
  // The member that equals `handle`, which may be it, or null. Requires the lock of the
  // shard.
  KIV_INLINE static DedupHandle* equalMember(const Shard& shard, const Miss& miss,
                                             const DedupHandle& handle);
  static DedupHandle* equalMemberAfter(const Shard& shard, const Miss& miss,
                                       const DedupHandle& handle);
  DedupHandle::Ptr dedupObserved(Shard& shard, const Miss& miss, const DedupHandle::Ptr& handle);
  void insertionUndo(Shard& shard, U32 mixed, DedupHandle& handle) noexcept;

  U32 memberRelease(DedupHandle& member) noexcept;
  U32 memberReleaseObserved(Shard& shard, U32 mixed, DedupHandle& member) noexcept;
  KIV_INLINE static Release releaseLocked(Shard& shard, U32 mixed, DedupHandle& member,
                                          U32& left) noexcept;
  KIV_INLINE static void tableReferenceDrop(DedupHandle& member) noexcept;

  void membersDetach() noexcept;
  void notifieeStop() noexcept;
  // The first member of the shard at `place` or after, which `place` then is behind;
  // from the beginning if there are no longer `places`.
  DedupHandle::Ptr memberFrom(const Shard& shard, U32& place, U32& places) const;

  const U32 shardMask_;
  const U16 number_;
  const bool threadSafe_;
  bool closing_ = false;
  std::unique_ptr<Shard[]> shards_;

  std::atomic<DedupHashTableLifeTimeNotifiee*> notifiee_{nullptr};
  std::atomic<Observation> observation_{Observation::none};  // what it is interested in
  Notification notification_;
};

// The table that every interning table of the library is built on.
class OV_EXPORT DedupHashTableUnorderedSet final : public DedupHashTable {
  KIV_OBJECT(DedupHashTableUnorderedSet)

 public:
  // A new, empty table; any number of threads may use it when `threadSafe`.
  static Kiv::Ptr<DedupHashTable> DedupHashTableUnorderedSetIs(bool threadSafe);

 private:
  explicit DedupHashTableUnorderedSet(bool threadSafe) : DedupHashTable(threadSafe) {}
};

}  // namespace Dorn

#endif
