// DedupHandle: the base of every interned object.
//
// Equal contents share one object, which a Dorn::DedupHashTable finds. An object is built
// privately by one thread and given to a table once (dedup). From then on it is read-only and
// shared.
//
// References. The table owns one reference to each member. A notifier object that stands for a
// member (haveLifeTimeNotifierIs) may own a second one. All others belong to users. The *idle
// count* of a member is the number of references held by table and notifier: 1 or 2. A release
// that leaves the idle count has given up the last user's reference: it removes the member
// from its table. The table's reference is dropped after that and mostly destroys the object.
//
// Layout. Three words behind the pointer to the virtual functions hold what the protocol needs:
//
//   word_    32 bits | 31: notifications | 30: 0 | 29: a notifier      | 28-0: references |
//                    | are on           |       | holds a reference   |                  |
//   table_   16 bits | number of the table (DedupTableNumbers), while a member             |
//   state_    8 bits | 7: beingDetached | 6: notable | 5-0: DedupHandleState               |
//
// word_ is the base's (Kiv/PtrInterface.h). Count and notifier flag share it, so that one read
// gives a count and the idle count that belongs to it. A subclass can use the eight bits that
// follow state_ before the next aligned word.
//
// Invariant. While no thread holds the lock of the shard that a handle h belongs to:
//
//   h is a member of t  <=>  h.dedupState() == deduped and h.table_ is the number of t
//                       <=>  exactly one slot of t's buckets contains h
//   h is a member       =>   references() > idle count: at least one user is left
//
// Threads. With thread-safe pointers on and a table built for several threads, any thread may
// copy and release references to a member at any time. state_ and table_ change only while one
// thread has the handle, or under the lock of the member's shard. DedupHashTable.h says how a
// release and a lookup that meet are settled.
#ifndef DORN_DEDUPHANDLE_H
#define DORN_DEDUPHANDLE_H

#include <atomic>

#include "Dorn/DedupContentHandle.h"
#include "Dorn/DelayPoint.h"
#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Dorn {

class DedupHashTable;

// Where a handle is in its life. A handle that has left its table differs from a handle that
// never was in one.
enum class DedupHandleState : U8 {
  neverDeduped = 0,  // new; its creator may still write to it
  deduped = 1,       // member of a table
  detached = 2,      // was a member; its table has removed it or no longer exists
  rebuilt = 4,       // read from a shared-memory store; never enters a table
};

// The state of a new handle, as a function for callers that compare with it.
constexpr DedupHandleState dedupHandleStateNeverDeduped() noexcept {
  return DedupHandleState::neverDeduped;
}

// While true, giving up a reference of an interned type does nothing. A host that is about to
// exit sets it, so that it need not take its tables apart; the memory stays allocated. Not
// atomic: one thread sets it, once, and never resets it.
extern OV_EXPORT bool dedupHandleDisableSmartPointerOperations;

// An interned object; see the top of this file. A subclass adds the content and compares it.
class OV_EXPORT DedupHandle : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(DedupHandle)
  // Interned types count by the reference operations of this class, not by those of the base
  // (Kiv::PtrInterface::ReferenceRules).
  using ReferenceRules = DedupHandle;

  // Whether the handle is a member of a table now. With several threads, the answer may be out
  // of date at once unless the caller owns a user's reference.
  virtual bool isDeduped() const noexcept;
  // Whether the handle is a member, was one, or is from a store. If false, it is still private.
  virtual bool everDeduped() const noexcept;
  // Ends the process unless the handle is a member of a table.
  virtual void assertIsDeduped() const noexcept;

  // The type's hash of the content. Equal contents have equal hashes.
  virtual U32 hash() const = 0;
  // Whether both contents are equal. `other` is of the type of this object's table. The table
  // calls it under a shard lock: it must not use a table or release a reference.
  virtual bool compare(RawPtrConst other) const = 0;
  // Whether `key`, a content record of this type, equals this object's content. Called under a
  // shard lock, like compare(). The default, for types that are never looked up by content, is
  // false.
  virtual bool compareByContent(const DedupContentHandle& key) const;
  // The hash that the table uses; the default is hash(). Any hash of the content will do, so a
  // type whose hash() is slow overrides it with a faster one. A release calls it on the last
  // user's reference, so it must not depend on other objects.
  virtual U32 probeHash() const;

  // Where the handle is in its life. Takes no lock, so it is a snapshot.
  DedupHandleState dedupState() const noexcept {
    return static_cast<DedupHandleState>(state() & ~(beingDetachedBit | notableBit));
  }
  // Whether the table has removed the handle and is about to drop its reference. Nobody may
  // take a reference then.
  bool beingDetached() const noexcept { return (state() & beingDetachedBit) != 0; }
  // Whether observers with Interest::notable are notified about this member. Fixed when the
  // handle is constructed.
  bool isNotable() const noexcept { return (state() & notableBit) != 0; }
  // Whether a notifier object owns a reference, so that the idle count is 2.
  bool haveLifeTimeNotifier() const noexcept { return (word() & lifeTimeNotifierFlag) != 0; }
  // Says whether a notifier object owns a counted reference to this handle. Set it after the
  // notifier has its reference, and clear it before the notifier drops that reference. In
  // between, a flag without a reference would keep the member in its table for ever. Requires,
  // while the handle is a member: somebody owns a user's reference during the call.
  void haveLifeTimeNotifierIs(bool have) const noexcept { flagIs(lifeTimeNotifierFlag, have); }

  // Takes a reference and returns the number of references after that. Requires: the caller
  // owns a reference, or holds the lock of the member's shard. Ends the process if the table
  // has removed the handle and is about to drop it. Hides the base's function.
  U32 referencesIncReturnRef() const noexcept {
    KIV_ASSERT(!beingDetached(), "!beingDetached()", "Dorn/DedupHandle");
    return referenceAdd() & countMask;
  }
  // Gives up a reference and returns the number of references after that. If no user is left,
  // removes the handle from its table, notifies the observer, and mostly destroys the handle.
  // Takes no lock while other users are left. Hides the base's function.
  U32 referencesDec() const noexcept;
  // Prefetches what the release of a reference needs, including the table's bucket if the
  // reference is the last user's. For callers that give up many handles at a time.
  void releasePrefetch() const noexcept;

 protected:
  // A private handle without a reference.
  DedupHandle() noexcept = default;
  // Called by the release of the last reference only.
  ~DedupHandle() override = default;

  // Sets the state and keeps the two flags beside it. Requires: one thread has the handle, or
  // the caller holds the lock of its shard.
  void dedupStateIs(DedupHandleState state) noexcept {
    const U8 bits = this->state() & (beingDetachedBit | notableBit);
    stateIs(bits | static_cast<U8>(state));
  }
  // Makes the handle notable. For constructors: nobody else has the handle yet.
  void notableIs() noexcept { stateIs(static_cast<U8>(state() | notableBit)); }

 private:
  friend class DedupHashTable;

  static constexpr U8 beingDetachedBit = 0x80;
  static constexpr U8 notableBit = 0x40;

  // The references of table and notifier of a member whose reference word is `word`: 1 or 2.
  static constexpr U32 idleCount(U32 word) noexcept {
    return 1 + ((word & lifeTimeNotifierFlag) != 0 ? 1 : 0);
  }
  // Whether a user is left after one more reference has been given up.
  static constexpr bool staysInUse(U32 word) noexcept {
    return (word & countMask) - 1 > idleCount(word);
  }
  // The fast path of staysInUse(), one subtraction and one comparison. True for the usual word:
  // three references or more, no notifier, notifications on. For any other word the difference
  // wraps around or has the notifier's bit, and is too large. False does not mean that no user
  // is left; the caller then takes the slow path.
  static constexpr bool surelyStaysInUse(U32 word) noexcept {
    return word - (notificationActiveFlag | 3) <= maxReferences - 3;
  }
  // Relaxed: a reader either has a reference that it got after the last change, or holds the
  // shard's lock, or treats the state as a hint and checks it again under the lock.
  U8 state() const noexcept { return state_.load(std::memory_order_relaxed); }
  void stateIs(U8 state) noexcept { state_.store(state, std::memory_order_relaxed); }
  void beingDetachedIs(bool being) noexcept {
    const U8 rest = state() & static_cast<U8>(~beingDetachedBit);
    stateIs(being ? rest | beingDetachedBit : rest);
  }
  // isDeduped() without a virtual call.
  bool isMember() const noexcept { return dedupState() == DedupHandleState::deduped; }
  U32 referencesDecShared(U32 seen) const noexcept;
  U32 doRemoveFromDedupTable() const noexcept;

  // See the drawing. Atomic only because releases read them without the lock.
  std::atomic<U16> table_{0};
  std::atomic<U8> state_{0};
};

// The fast path for one thread: if a user is surely left, only the count changes. With several
// threads, the prefetch gets the word's cache line for writing at once. Otherwise the read would
// fetch the line shared, and the compare-and-exchange a second time, exclusive.
inline U32 DedupHandle::referencesDec() const noexcept {
  if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
    return 1;
  if (!threadSafePointers) {
    const U32 seen = word();
    if (surelyStaysInUse(seen)) return referenceSubtractPlain(seen) & countMask;
    return referencesDecShared(seen);
  }
  referenceWordPrefetch();
  const U32 seen = word();
  delayAt(DelayPoint::decrement);
  return referencesDecShared(seen);
}

}  // namespace Dorn

#endif
