// DedupHashTable: the interning table. Equal contents share one object.
//
// Terms. A *member* is a handle that is in a table. Its *idle count* is the number of references
// that the table (always one) and a notifier object (one, if the handle's flag says so) own. All
// other references are users'. A member stays in the table while it has a user, so while its
// reference count is above its idle count (see the invariant in DedupHandle.h).
//
// Ownership. The table owns one reference to each member. Destroying the table detaches its
// members: handles that users still own stay alive, without a table, and are released like any
// counted object. Other threads may release members while one thread destroys the table. They must
// not do anything else with the table then.
//
// Threads. A table made thread-safe may be used by any thread. It is split into shards by hash.
// A shard has a spin lock that is held for one probe. Four races must be settled:
//
// 1. Release against lookup, and against another release. If a thread first decremented the
//    count to the idle count and only then locked the shard, another thread could revive,
//    release and destroy the member in between. Therefore, if only the references of table and
//    notifier might remain after a release, the release locks the member's shard first and
//    decides under the lock, once. One exchange then decrements the count and, if no user is
//    left, also changes the state. A lookup takes its reference under the same lock. Either the
//    lookup is first and revives the member, or it does not find the member any more.
// 2. Order of notices. An observer must be notified that the old member was removed before it is
//    notified that an equal new member was inserted. Therefore, for observed members, insertion
//    and handleInsert are one step under the table's notification lock, and removal and
//    handleRemove are one step, too. No shard lock is held while an observer runs. A lookup never
//    takes the notification lock.
// 3. Count against idle count and state. The flag for the notifier's reference, the state and the
//    number of the table are in the same atomic word as the count, so a release never compares a
//    new count with an old idle count. A release that has seen a handle outside all tables checks
//    this again in the exchange. Without the check, the handle could enter a table meanwhile, its
//    reference would count as a user's, and the member would stay for ever.
// 4. Release against the end of the table. The locks are in the table's shell
//    (Detail/DedupTableShell.h). The shell of a table with locks outlives the table, so a release
//    that is late finds under the lock that the handle has left the table, and starts again.
//
// models/interning.pml is a model of this protocol; a model checker searches all its interleavings.
//
// Order of locks: the notification lock of a table, then one shard lock of that table. Under a
// shard lock no thread takes another lock of any table. Under the notification lock, an observer
// may use this table and the tables below it (list, then sub-list, then value). Therefore the
// notification locks of several tables are taken downward only.
//
// Destruction. No object is ever destroyed under a shard lock. The table's reference to a member
// that a release has removed is dropped after the shard's lock. If the member was observed, the
// reference is dropped after this thread's outermost hold of the notification lock, too. Normally
// no object is destroyed under a notification lock either. The exceptions are:
// - a removed member, if there is no memory to remember it for later (dropLater);
// - objects that an observer's handler itself releases, unless they are observed members of the
//   handler's own table. These are objects of the tables below, unobserved members and private
//   handles;
// - unobserved members whose last user was the walk of lifeTimeNotifieeIs();
// - an observer whose last reference is given up while it is notified that it must stop.
// These cases cannot deadlock, because destructors release objects in the same table, whose
// notification lock is recursive, and in tables below it.
//
// A table made for one thread has one shard and takes no lock.
//
// fork(). In a child of a process whose other threads used a table at that moment, a lock of this
// table may be held for ever. Such a child must not touch the tables that it has inherited, nor
// release handles. It calls exec() or _exit(), or works with tables that it makes itself. Pools and
// all other state of the framework are usable in the child.
#ifndef DORN_DEDUPHASHTABLE_H
#define DORN_DEDUPHASHTABLE_H

#include <vector>

#include "Dorn/DedupHandle.h"
#include "Dorn/DedupHashTableLifeTimeNotifiee.h"
#include "Dorn/Detail/DedupTableShell.h"
#include "Dorn/DumpContext.h"
#include "Kiv/Export.h"
#include "Kiv/Inline.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/ThreadAnnotations.h"

namespace Dorn {

// An interning table; see the top of this file. All members of one table are of one type.
//
// Predicates. The lookups below call `isWanted(const Handle&)` for each member that matches the
// hash's tag, and so for some members of other hashes, too. Therefore the predicate must compare
// the contents. The predicate is called under a shard lock. It must not use a table, and it must
// not take or give up references.
class OV_EXPORT DedupHashTable : public Kiv::PtrInterface {
  KIV_OBJECT(DedupHashTable)

 public:
  // The member whose content is `key` and whose hash() is `hash`, or null. Takes one lock, builds
  // nothing, and allocates nothing.
  //
  // The table searches with the result of the key probe. If no key probe is set, it searches with
  // `hash`. The member's hash() is compared after the lock has been released, because hash() may be
  // slow.
  DedupHandle::Ptr lookupByContent(const DedupContentHandle& key, U32 hash) const;

  // A function that computes the probeHash() of members with the content `key`.
  using KeyProbe = U32 (*)(const DedupContentHandle& key);
  // Sets the key probe, for types whose probeHash() is not their hash(). Requires: no other thread
  // uses the table yet.
  void keyProbeIs(KeyProbe probe) noexcept { keyProbe_ = probe; }

  // The member of class `Handle` whose content is `key`, for callers that know its probeHash() and
  // give it as `hash`. No subclass of `Handle` may override compareByContent(), because this calls
  // it without virtual dispatch.
  template <class Handle>
  Kiv::Ptr<Handle> lookup(const DedupContentHandle& key, U32 hash) const {
    Miss miss;
    return lookup<Handle>(
        hash, [&key](const Handle& member) { return member.Handle::compareByContent(key); }, miss);
  }

  // The fast path of a lookup: the member that `isWanted` accepts, if it is in its home bucket
  // and the table is for one thread. Null does not mean that there is no member; the caller
  // then calls lookupElsewhere(). Inlined, and so short that the caller saves no registers.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookupAtHome(U32 hash, const IsWanted& isWanted) const {
    if (threadSafe_) return nullptr;
    const U32 mixed = mixed32(hash);
    const auto wanted = memberThat<Handle>(isWanted);
    const Shard& shard = shards_[0];
    onlyThreadUses(shard);
    auto* const found = shard.buckets.findAtHome(mixed, wanted);
    if (!found) return nullptr;
    found->referenceAdd();
    return Kiv::Ptr<Handle>(static_cast<Handle*>(found), Kiv::adopt);
  }

  // A lookup that found nothing, as a token for the insertion that follows: dedup() probes
  // again only if the shard has had an insertion since. Give dedup() only a token that a lookup
  // of the same table has set.
  class Miss {
   private:
    friend class DedupHashTable;

    bool wasLookup() const noexcept { return insertions_ != ~U64{0}; }

    U32 mixed_ = 0;             // mixed32() of the hash
    U64 insertions_ = ~U64{0};  // Shard::insertions at the lookup; ~0: there was no lookup
  };

  // The member with this hash that `isWanted` accepts. If there is none, returns null and sets
  // `miss`.
  //
  // A hit increments the candidate's reference count, and in a table for several threads another
  // processor may own that cache line. Therefore the line is prefetched for writing before the
  // content is compared.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookup(U32 hash, const IsWanted& isWanted, Miss& miss) const {
    const U32 mixed = mixed32(hash);
    const auto wanted = [isThat = memberThat<Handle>(isWanted)](const DedupHandle* member) {
      member->referenceWordPrefetch();
      return isThat(member);
    };
    const Shard& shard = shardOf(mixed);
    const ShardLock lock(threadSafe_, shard);
    return foundOrMissed<Handle>(miss, shard, mixed, shard.buckets.find(mixed, wanted));
  }

  // The slow path after lookupAtHome() has returned null, with the same hash and predicate and
  // with nothing done to the table since. Returns what lookup() would return, and sets `miss`
  // likewise.
  template <class Handle, class IsWanted>
  KIV_INLINE Kiv::Ptr<Handle> lookupElsewhere(U32 hash, const IsWanted& isWanted,
                                              Miss& miss) const {
    if (threadSafe_) return lookup<Handle>(hash, isWanted, miss);
    const U32 mixed = mixed32(hash);
    const auto wanted = memberThat<Handle>(isWanted);
    const Shard& shard = shards_[0];
    onlyThreadUses(shard);
    return foundOrMissed<Handle>(miss, shard, mixed, shard.buckets.findElsewhere(mixed, wanted));
  }

  // Prefetches the home bucket of members with this hash for a coming lookup, insertion or
  // release. Does nothing in a table for several threads, where buckets may be read only under
  // a lock.
  KIV_INLINE void prefetch(U32 hash) const noexcept {
    if (threadSafe_) return;
    const U32 mixed = mixed32(hash);
    const Shard& shard = shardOf(mixed);
    onlyThreadUses(shard);
    shard.buckets.prefetch(mixed);
  }

  // Interns `handle`: returns the member with an equal content. If there is none, `handle`
  // becomes a member and is returned.
  //
  // Throws std::bad_alloc, and exceptions of the observer's handleInsert; the table is then as
  // before. Requires: `handle` is in no other table. Unless it is a member of this one, no
  // other thread has it. (After a refused insertion, other threads may have it.)
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle) {
    const U32 hash = handle->probeHash();
    return dedup(std::move(handle), hash);
  }
  // dedup() for callers that know the handle's probeHash() already.
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle, U32 hash);
  // dedup() after a lookup of the handle's content in this table has set `miss`.
  DedupHandle::Ptr dedup(DedupHandle::Ptr handle, const Miss& miss);

  // Registers an observer. A former observer is first notified that it must stop. The new observer
  // is then notified of each member that exists already. Null only stops the former observer. The
  // table owns no reference to its observer.
  //
  // Throws std::bad_alloc, and exceptions of handleInsert. The new observer is then notified that
  // it must stop, and the table has no observer.
  void lifeTimeNotifieeIs(const DedupHashTableLifeTimeNotifiee::Ptr& notifiee);
  // Notifies the observer, if the table has one, that it must stop, and unregisters it.
  void lifeTimeNotifieeDel() { lifeTimeNotifieeIs(nullptr); }

  // The number of members. Adds up the shards one by one, so the sum is no snapshot while other
  // threads insert and release.
  U32 size() const;
  // All members, each with a reference that keeps it in the table. For walks that may change
  // the table in any way. Throws std::bad_alloc. Not a snapshot, like size().
  std::vector<DedupHandle::Ptr> members() const;
  // Calls `visit(const DedupHandle::Ptr&)` for the members one by one. Allocates nothing. The
  // walk owns a reference to the member and holds no lock during the call, so `visit` may
  // change the table. A member that exists during the whole walk is visited at least once. It
  // is visited again each time that its shard grows meanwhile.
  template <class Visit>
  void membersVisit(const Visit& visit) const {
    for (U32 i = 0; i <= shardMask_; ++i) {
      U32 slot = 0;
      U32 slotCount = 0;
      while (const DedupHandle::Ptr member = memberFrom(shards_[i], slot, slotCount)) visit(member);
    }
  }

  // Prints one line with the number of members, indented by `indent` blanks.
  void dumpState(const Kiv::Ptr<const DumpContext>& context, unsigned int indent) const;

  // Called when the last reference to the table has been given up. Notifies the observer that it
  // must stop, detaches all members, and destroys the table.
  void zeroReferencesIs() noexcept override;
  // Requires: zeroReferencesIs() has emptied the table.
  ~DedupHashTable() override;

 protected:
  // An empty table. Throws std::bad_alloc, and std::length_error if the process has 65,536 tables
  // already. A thread-safe table ends the process unless thread-safe pointers are on.
  explicit DedupHashTable(bool threadSafe);

 private:
  friend class DedupHashTableLifeTimeNotifiee;

  using Shard = DedupTableShell::Shard;
  using ShardLock = DedupTableShell::ShardLock;
  using NotificationLock = DedupTableShell::NotificationLock;

  static constexpr U32 mixed32(U32 hash) noexcept { return DedupTableShell::mixed32(hash); }
  Shard& shardOf(U32 mixed) const noexcept { return shards_[mixed & shardMask_]; }
  // For Clang's check: no lock is needed here, because no other thread uses the table. No code.
  static void onlyThreadUses(const Shard& shard) noexcept KIV_ASSERT_CAPABILITY(shard.lock) {
    static_cast<void>(shard);
  }

  // The predicate for the buckets, made of the caller's. The caller's must live as long.
  template <class Handle, class IsWanted>
  static auto memberThat(const IsWanted& isWanted) noexcept {
    return [&isWanted](const DedupHandle* member) {
      return isWanted(static_cast<const Handle&>(*member));
    };
  }
  // The end of a lookup: a reference to `found`, or null with `miss` set.
  template <class Handle>
  KIV_INLINE static Kiv::Ptr<Handle> foundOrMissed(Miss& miss, const Shard& shard, U32 mixed,
                                                   DedupHandle* found) KIV_REQUIRES(shard.lock) {
    if (found) {
      found->referenceAdd();
    } else {
      miss.mixed_ = mixed;
      miss.insertions_ = shard.insertions;
    }
    return Kiv::Ptr<Handle>(static_cast<Handle*>(found), Kiv::adopt);
  }
  // A new reference to a member, or null for null. Requires the lock of the member's shard.
  static DedupHandle::Ptr referenceTo(DedupHandle* member) noexcept {
    if (member) member->referenceAdd();
    return DedupHandle::Ptr(member, Kiv::adopt);
  }

  KIV_INLINE void insert(Shard& shard, U32 mixed, DedupHandle& handle) KIV_REQUIRES(shard.lock);
  KIV_INLINE static DedupHandle* equalMember(const Shard& shard, const Miss& miss,
                                             const DedupHandle& handle) KIV_REQUIRES(shard.lock);
  static DedupHandle* equalMemberAfter(const Shard& shard, const Miss& miss,
                                       const DedupHandle& handle) KIV_REQUIRES(shard.lock);
  DedupHandle::Ptr dedupObserved(Shard& shard, const Miss& miss, const DedupHandle::Ptr& handle);

  void notifieeDel(const DedupHashTableLifeTimeNotifiee& notifiee);
  void notifieeStop() noexcept KIV_REQUIRES(shell_.notification.lock);
  // Returns the first member of the shard at slot number `slot` or later, and sets `slot` to
  // the number behind it. If the shard has grown since the last call (`slotCount` differs from
  // its number of slots), sets `slotCount` and starts again at 0. Null at the end.
  DedupHandle::Ptr memberFrom(const Shard& shard, U32& slot, U32& slotCount) const;

  DedupTableShell& shell_;
  // Three of the shell's constants, here to save every lookup a step.
  Shard* const shards_;
  const U32 shardMask_;
  const bool threadSafe_;
  KeyProbe keyProbe_ = nullptr;
  bool closing_ = false;  // zeroReferencesIs() has begun; of the last thread
};

// The implementation that every interning table of the library is made of.
class OV_EXPORT DedupHashTableUnorderedSet final : public DedupHashTable {
  KIV_OBJECT(DedupHashTableUnorderedSet)

 public:
  // A new, empty table. With `threadSafe`, any number of threads may use it at once; then
  // Kiv::VFPtrInterface::threadSafePointers must be on as well. Throws std::bad_alloc and
  // std::length_error.
  static Kiv::Ptr<DedupHashTable> DedupHashTableUnorderedSetIs(bool threadSafe);

 private:
  explicit DedupHashTableUnorderedSet(bool threadSafe) : DedupHashTable(threadSafe) {}
};

}  // namespace Dorn

#endif
