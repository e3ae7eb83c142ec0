// DedupHandle: the base of every interned object.
//
// Equal contents share one object, which a Dorn::DedupHashTable finds. An object is built
// privately by one thread and given to a table once (dedup). From then on it is read-only and
// shared.
//
// References. The table owns one reference to each member. A notifier object that represents
// a member (haveLifeTimeNotifierIs) may own a second reference. All others belong to users. The
// *idle count* of a member is the number of references that table and notifier own: 1 or 2. If
// only the references of table and notifier remain after a release, the last user is gone, and
// the release removes the member. The table's reference is dropped after that, which mostly
// destroys the object.
//
// Layout. The reference word (Kiv/PtrInterface.h) holds all that the protocol decides about, in
// 64 bits that change as a whole:
//
//    63          56 | 55           48 | 47         32 | 31                                   0
//   +---------------+-----------------+---------------+---------------------------------------+
//   | octet of the  | state           | number of the | notification flag, notifier flag,     |
//   | subclass      |                 | table's shell | number of references                  |
//   +---------------+-----------------+---------------+---------------------------------------+
//
//   state, 8 bits   | 7: beingDetached | 6: notable | 5-0: DedupHandleState                  |
//
// A release therefore changes the count only if the handle is still in the state that the thread
// has seen, and a removal changes state and count in one step. The table's number is valid only
// while the handle is a member. The subclass's octet changes only while one thread has the handle.
// The octet costs no memory; a data member of its own would cost eight octets with alignment.
//
// Invariant. While no thread holds the lock of the shard that a handle h belongs to:
//
//   h is a member of t  <=>  the state of h is `deduped`, with the number of t's shell
//                       <=>  exactly one slot of t's buckets contains h
//   h is a member       =>   references() > idle count: at least one user is left
//
// Threads. With thread-safe pointers on and a table built for several threads, any thread may
// copy and release references to a member at any time. The state changes only while one thread
// has the handle, or under the lock of the member's shard. DedupHashTable.h says how a release
// and a lookup that meet are settled.
#ifndef DORN_DEDUPHANDLE_H
#define DORN_DEDUPHANDLE_H

#include "Dorn/DedupContentHandle.h"
#include "Dorn/DelayPoint.h"
#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/RelaxedFlag.h"
#include "Kiv/Types.h"

namespace Dorn {

class DedupHashTable;
class DedupTableShell;

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
// exit sets it, so that it need not take its tables apart; the memory stays allocated. One
// thread sets it, once, and never resets it; other threads see it soon.
extern OV_EXPORT Kiv::RelaxedFlag dedupHandleDisableSmartPointerOperations;

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
  // calls this function under a shard lock, so the function must not use a table or release a
  // reference.
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
    return static_cast<DedupHandleState>(state() & ~flagBits);
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
  // A private handle without a reference. `ownOctet` is the subclass's octet; `notable` is what
  // isNotable() answers.
  explicit DedupHandle(U8 ownOctet = 0, bool notable = false) noexcept
      : PtrInterface(U32{ownOctet} << (ownShift - 32) | U32{notable ? notableBit : U8{0}}
                                                            << (stateShift - 32)) {}
  // Called by the release of the last reference only.
  ~DedupHandle() override = default;

  // Sets the state and keeps the two flags beside it. Requires: one thread has the handle, or
  // the caller holds the lock of its shard.
  void dedupStateIs(DedupHandleState state) noexcept {
    stateIs(static_cast<U8>((this->state() & flagBits) | static_cast<U8>(state)));
  }
  // Makes the handle notable. For constructors: nobody else has the handle yet.
  void notableIs() noexcept { stateIs(state() | notableBit); }

  // Eight bits that a subclass may use as it likes. Any thread may read them.
  U8 ownOctet() const noexcept { return static_cast<U8>(highWord() >> (ownShift - 32)); }
  // Sets them. Requires: one thread uses the handle, though others may have references to it.
  void ownOctetIs(U8 octet) noexcept {
    if (octet != ownOctet()) wordAdd((U64{octet} - U64{ownOctet()}) << ownShift);
  }
  // Sets some of the bits of a new handle, which no other thread has seen yet.
  void newOwnBitsAdd(U8 bits) noexcept { newWordIs(wholeWord() | U64{bits} << ownShift); }

 private:
  friend class DedupHashTable;
  friend class DedupTableShell;

  static constexpr U8 beingDetachedBit = 0x80;
  static constexpr U8 notableBit = 0x40;
  static constexpr U8 flagBits = beingDetachedBit | notableBit;
  // Where the fields begin in the word; see the drawing.
  static constexpr U32 tableShift = 32;
  static constexpr U32 stateShift = 48;
  static constexpr U32 ownShift = 56;

  // The references of table and notifier of a member whose reference word is `word`: 1 or 2.
  static constexpr U32 idleCount(U64 word) noexcept {
    return 1 + ((word & lifeTimeNotifierFlag) != 0 ? 1 : 0);
  }
  static constexpr U32 countOf(U64 word) noexcept { return static_cast<U32>(word) & countMask; }
  // Whether a user is left after one more reference has been given up.
  static constexpr bool staysInUse(U64 word) noexcept {
    return countOf(word) - 1 > idleCount(word);
  }
  // The fast path of staysInUse(), one subtraction and one comparison. True for the usual low
  // half of the word: three references or more, not saturated, no notifier, notifications on.
  // For any other word the difference wraps around or has the notifier's bit, and is too large.
  // False does not mean that no user is left; the caller then takes the slow path.
  static constexpr bool surelyStaysInUse(U32 word) noexcept {
    return word - (notificationActiveFlag | 3) < saturatedReferences - 3;
  }
  static constexpr U8 stateOf(U64 word) noexcept { return static_cast<U8>(word >> stateShift); }
  static constexpr bool isMember(U64 word) noexcept {
    return (stateOf(word) & ~flagBits) == static_cast<U8>(DedupHandleState::deduped);
  }
  static constexpr U16 tableOf(U64 word) noexcept { return static_cast<U16>(word >> tableShift); }
  static constexpr bool isMemberOf(U64 word, U16 table) noexcept {
    return isMember(word) && tableOf(word) == table;
  }
  // Whether the release of one reference to a member leaves no user.
  static constexpr bool isUnusedAfterRelease(U64 word) noexcept {
    return countOf(word) - 1 == idleCount(word);
  }
  // The amount that a state change adds to the word, modulo 2 to the 64.
  static constexpr U64 stateDelta(U8 from, U8 to) noexcept {
    return (U64{to} - U64{from}) << stateShift;
  }
  // The word of a member, after its removal by a release has begun.
  static constexpr U64 detaching(U64 word) noexcept {
    return word + stateDelta(static_cast<U8>(DedupHandleState::deduped),
                             static_cast<U8>(DedupHandleState::detached) | beingDetachedBit);
  }

  // Relaxed: a reader either has a reference that it got after the last change, or holds the
  // shard's lock, or treats the state as a hint and checks it again.
  U8 state() const noexcept { return static_cast<U8>(highWord() >> (stateShift - 32)); }
  // An addition, because other threads may change the count meanwhile.
  void stateIs(U8 state) noexcept { wordAdd(stateDelta(this->state(), state)); }
  // isDeduped() without a virtual call.
  bool isMember() const noexcept { return dedupState() == DedupHandleState::deduped; }

  // The handle enters a table: counts the table's reference. Requires the shard's lock.
  void memberIs(U16 table) noexcept {
    constexpr U64 fields = U64{0xFFFF} << tableShift | U64{0xFF ^ flagBits} << stateShift;
    const U64 seen = wholeWord();
    const U64 wanted = U64{table} << tableShift | U64{static_cast<U8>(DedupHandleState::deduped)}
                                                      << stateShift;
    wordAdd(seen, wanted - (seen & fields) + 1);
  }
  // The handle leaves its table without a release: drops the table's reference in the same step.
  // Returns the references that are left. Requires the shard's lock.
  U32 memberDel() noexcept {
    const U8 before = state();
    const U8 after = (before & flagBits) | static_cast<U8>(DedupHandleState::detached);
    return countOf(wordAdd(stateDelta(before, after) - 1));
  }
  // The last step of a removal by a release: drops the table's reference, and "being detached"
  // ends. Returns the references that are left.
  U32 detachedDrop() noexcept { return countOf(wordAdd(stateDelta(beingDetachedBit, 0) - 1)); }

  U32 referencesDecShared(U64 seen) const noexcept;
  U32 doRemoveFromDedupTable(U16 table) const noexcept;
};

// The fast path for one thread: if a user is surely left, only the count changes. With several
// threads, the prefetch gets the word's cache line for writing at once. Otherwise the read would
// fetch the line shared, and the compare-and-exchange a second time, exclusive.
inline U32 DedupHandle::referencesDec() const noexcept {
  if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
    return 1;
  if (!threadSafePointers) {
    const U64 seen = wholeWord();
    if (surelyStaysInUse(static_cast<U32>(seen))) return referenceSubtractPlain(seen) & countMask;
    return referencesDecShared(seen);
  }
  referenceWordPrefetch();
  const U64 seen = wholeWord();
  delayAt(DelayPoint::decrement);
  return referencesDecShared(seen);
}

}  // namespace Dorn

#endif
