// The base of every interned object.
//
// Equal contents share one object, found through a Dorn::DedupHashTable.  An
// object is built privately, handed to a table once (`dedup`), and from then on
// read-only and shared.  References to a member: one by the table, one by its
// lifetime notifier if a notifier object holds it, the rest by users.  The
// release that leaves only the first two takes the member out of the table, and
// the table's reference, dropped after, destroys it.
//
// Threads: with thread-safe pointers on and a table built for several threads,
// any thread may share and release members at any time.  DedupHashTable.h says
// how a release and a lookup that meet are settled.
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

// Where a handle is in its life.  A handle that has left its table can be told
// from one that never was in any.
enum class DedupHandleState : U8 {
  neverDeduped = 0,
  deduped = 1,   // member of a table
  detached = 2,  // was a member; its table removed it or is gone
  rebuilt = 4,   // came from a shared-memory store; never enters a table
};

constexpr DedupHandleState dedupHandleStateNeverDeduped() noexcept {
  return DedupHandleState::neverDeduped;
}

// While on, giving up a reference of an interned type does nothing: a host that
// is about to exit need not take its tables apart.  Set by one thread, for good.
extern OV_EXPORT bool dedupHandleDisableSmartPointerOperations;

class OV_EXPORT DedupHandle : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(DedupHandle)
  using ReferenceRules = DedupHandle;

  // Whether the handle is in a table now, and whether it ever was.
  virtual bool isDeduped() const noexcept;
  virtual bool everDeduped() const noexcept;
  // Stops the process unless the handle is in a table.
  virtual void assertIsDeduped() const noexcept;

  // The contract of an interned type.  Equal contents have equal hashes; compare
  // answers equality and is given only handles of the table's own type.
  virtual U32 hash() const = 0;
  virtual bool compare(RawPtrConst other) const = 0;
  // Whether `key`, a content record of this type, has this object's content.  The
  // default, for types that are never looked up so, is false.
  virtual bool compareByContent(const DedupContentHandle& key) const;
  // What the table probes with: any hash of the content will do, so a type whose
  // hash() is slow can offer a cheaper one.  Never needs other objects.
  virtual U32 probeHash() const;

  DedupHandleState dedupState() const noexcept {
    return static_cast<DedupHandleState>(state() & ~(beingDetachedBit | notableBit));
  }
  bool beingDetached() const noexcept { return (state() & beingDetachedBit) != 0; }
  // Whether observers of notable members only hear of this one.
  bool isNotable() const noexcept { return (state() & notableBit) != 0; }
  bool haveLifeTimeNotifier() const noexcept { return (word() & lifeTimeNotifierFlag) != 0; }
  // Says that a notifier object holds a counted reference to this handle: set it
  // after that reference is taken, clear it before that reference is dropped.
  void haveLifeTimeNotifierIs(bool have) const noexcept { flagIs(lifeTimeNotifierFlag, have); }

  // Both return the references held after the change.  They hide the base's: see
  // ReferenceRules.
  U32 referencesIncReturnRef() const noexcept {
    KIV_ASSERT(!beingDetached(), "!beingDetached()", "Dorn/DedupHandle");
    return referenceAdd() & countMask;
  }
  U32 referencesDec() const noexcept;
  // Says that a reference will be given up soon: if it is the last one, the table then
  // has at hand what it needs.  For those who give up many handles at a time.
  void releasePrefetch() const noexcept;

 protected:
  DedupHandle() noexcept = default;
  ~DedupHandle() override = default;

  void dedupStateIs(DedupHandleState state) noexcept {
    const U8 bits = this->state() & (beingDetachedBit | notableBit);
    stateIs(bits | static_cast<U8>(state));
  }
  // For the constructors of a type.
  void notableIs() noexcept { stateIs(static_cast<U8>(state() | notableBit)); }

 private:
  friend class DedupHashTable;

  static constexpr U8 beingDetachedBit = 0x80;
  static constexpr U8 notableBit = 0x40;

  // The references that keep a member in its table though nobody uses it: one or two.
  static constexpr U32 idleReferences(U32 word) noexcept {
    return 1 + ((word & lifeTimeNotifierFlag) != 0 ? 1 : 0);
  }
  // Whether somebody uses the handle even when one more reference has gone.
  static constexpr bool staysInUse(U32 word) noexcept {
    return (word & countMask) - 1 > idleReferences(word);
  }
  // The same in one comparison: three references or more, no notifier, and notifying, as
  // factories make them. False says nothing.
  static constexpr bool surelyStaysInUse(U32 word) noexcept {
    return word - (notificationActiveFlag | 3) <= maxReferences - 3;
  }
  U8 state() const noexcept { return state_.load(std::memory_order_relaxed); }
  void stateIs(U8 state) noexcept { state_.store(state, std::memory_order_relaxed); }
  void beingDetachedIs(bool being) noexcept {
    const U8 rest = state() & static_cast<U8>(~beingDetachedBit);
    stateIs(being ? rest | beingDetachedBit : rest);
  }
  // What isDeduped answers, without a virtual call.
  bool isMember() const noexcept { return dedupState() == DedupHandleState::deduped; }
  U32 referencesDecShared(U32 seen) const noexcept;
  U32 doRemoveFromDedupTable() const noexcept;

  // Both change only while one thread has the handle, or under the table's lock.
  // What a subclass has of one octet comes right behind them, before the padding.
  std::atomic<U16> table_{0};  // its number, while a member
  std::atomic<U8> state_{0};   // a DedupHandleState, and the bits
};

// Nothing but the count while others still use the handle and one thread counts.
inline U32 DedupHandle::referencesDec() const noexcept {
  if (dedupHandleDisableSmartPointerOperations) [[unlikely]]
    return 1;
  if (!threadSafePointers) {
    const U32 seen = word();
    if (surelyStaysInUse(seen)) return referenceSubtractPlain(seen) & countMask;
    return referencesDecShared(seen);
  }
  wordPrefetch();
  const U32 seen = word();
  delayAt(DelayPoint::decrement);
  return referencesDecShared(seen);
}

}  // namespace Dorn

#endif
