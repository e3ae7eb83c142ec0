// The base of every shared object: an intrusive reference count, two flags in the same word, and
// the operations that the framework expects of an object.
//
// The reference word, 64 bits, is changed as a whole, so that a decision that depends on the count,
// on a flag and on the state of an interned object can read all of them at once:
//
//    63            32 31             30     29              28                               0
//   +----------------+--------------+------+---------------+---------------------------------+
//   | of derived     | notification | zero | lifetime-     | number of references,           |
//   | classes        | active       |      | notifier held | 0 to 0x1FFFFFFF                 |
//   +----------------+--------------+------+---------------+---------------------------------+
//
// - Bits 32 to 63 are of no concern here. Interned objects keep the number of their table and their
//   state in them (Dorn/DedupHandle.h). All operations below leave them as they are.
// - Bit 31, notificationActiveFlag: changes of the object are notified to its observers.
// - Bit 30 belongs to countMask, but the count never reaches it.
// - Bit 29, lifeTimeNotifierFlag: a notifier object owns one of the counted references. Only
//   interned objects use this bit (Dorn/DedupHandle.h).
// - Bits 0 to 28: the count. It saturates: see saturatedReferences.
#ifndef KIV_PTRINTERFACE_H
#define KIV_PTRINTERFACE_H

#include <atomic>
#include <cstddef>

#include "Kiv/Detail/CacheLine.h"
#include "Kiv/Export.h"
#include "Kiv/Pool.h"
#include "Kiv/Ptr.h"
#include "Kiv/RelaxedFlag.h"
#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace Kiv {

class NotifieeList;

// The reference word and the operations on it. They are building blocks: they count, but they never
// destroy the object. PtrInterface and Dorn::DedupHandle add the rules.
class OV_EXPORT VFPtrInterface {
 public:
  // The process-wide thread-safe pointer mode. While it is on, counts change by atomic
  // read-modify-write operations; while it is off, by a plain load and store, which several threads
  // must not do at once. The host sets it once, before it creates tables and while it has a
  // single thread. It is independent of OvBgpGlobals::multiThreaded(), but a table with locks
  // requires it.
  static RelaxedFlag threadSafePointers;

  // All bits of the word that are no flag. The hole at bit 29 is the lifetime-notifier flag. Bit 30
  // is included, but it is always 0, because the count stays below maxReferences.
  static constexpr U32 countMask = 0x5FFFFFFF;
  // The bits of the count. A higher count would carry into the lifetime-notifier flag, bit 29.
  static constexpr U32 maxReferences = 0x1FFFFFFF;
  // From this count on, about half a billion, an object is saturated: references are not counted
  // any more, and the object stays for ever. (An agent of 1,000 peers and a million routes can get
  // there with one list.) The count then jumps to the middle of the range above, so that threads
  // that are just changing it can bring it neither back below this limit nor up to the flag.
  static constexpr U32 saturatedReferences = 0x1E000000;

  // Not copyable: an object has an identity, and its references refer to one address.
  VFPtrInterface(const VFPtrInterface&) = delete;
  // Not assignable: the count belongs to the address, not to the content.
  VFPtrInterface& operator=(const VFPtrInterface&) = delete;

  // The number of references at this moment. A snapshot: other threads may change the count at any
  // time, so 1 proves that the object is unshared only if the caller owns that reference.
  U32 references() const noexcept { return word() & countMask; }

  // Initialises the low half of a new object's word: one reference, which the caller must adopt,
  // and active notification. Requires that no other thread has seen the object and that no
  // reference exists.
  void beginNotifying() noexcept {
    newWordIs(word_.load(std::memory_order_relaxed) + (notificationActiveFlag | 1));
  }

 protected:
  // Set while changes of the object are notified to its observers.
  static constexpr U32 notificationActiveFlag = 0x80000000;
  // Set while a notifier object owns one of the counted references.
  static constexpr U32 lifeTimeNotifierFlag = 0x20000000;

  // A word with no reference and no flag.
  VFPtrInterface() noexcept = default;
  // The same with an upper half that is not zero, for derived classes that use it.
  explicit VFPtrInterface(U32 high) noexcept : word_(U64{high} << 32) {}
  // Not virtual and not public: objects are destroyed through PtrInterface only.
  ~VFPtrInterface() = default;

  // The whole word of one moment. Acquire: a reader of the count also sees what the threads that
  // released references before did to the object.
  U64 wholeWord() const noexcept { return word_.load(std::memory_order_acquire); }
  // Its low half: count and flags.
  U32 word() const noexcept { return static_cast<U32>(wholeWord()); }
  // Its upper half. Relaxed: who reads it has a reference or a lock that orders the read, or checks
  // the answer again.
  U32 highWord() const noexcept {
    return static_cast<U32>(word_.load(std::memory_order_relaxed) >> 32);
  }
  // Whether references to an object with this word are counted no more.
  static constexpr bool isSaturated(U64 word) noexcept {
    return (word & maxReferences) >= saturatedReferences;
  }
  // Prefetches the cache line of the word for writing. Call it when the word will be read and then
  // changed soon and other cores change it, too.
  void referenceWordPrefetch() const noexcept { prefetchToWrite(&word_); }

  // Sets the whole word of an object that no other thread has seen yet.
  void newWordIs(U64 word) noexcept { word_.store(word, std::memory_order_relaxed); }

  // Adds `delta`, modulo 2 to the 64, to the whole word and returns the result. With a delta that
  // changes several fields, this changes them in one step. Acquire and release.
  U64 wordAdd(U64 delta) const noexcept {
    return wordAdd(word_.load(std::memory_order_relaxed), delta);
  }
  // The same for a caller that has read the word just before, as `seen`. Outside the thread-safe
  // pointer mode this saves a second read.
  U64 wordAdd(U64 seen, U64 delta) const noexcept {
    if (threadSafePointers) return word_.fetch_add(delta, std::memory_order_acq_rel) + delta;
    word_.store(seen + delta, std::memory_order_relaxed);
    return seen + delta;
  }

  // Replaces the word by `next` if it still equals `seen`, and returns true. Otherwise updates
  // `seen` to the current word and returns false, so that the caller can decide again. May fail
  // spuriously (weak compare-and-exchange). Acquire and release. Outside the thread-safe pointer
  // mode no other thread changes the word, so it always succeeds.
  bool wordReplace(U64& seen, U64 next) const noexcept {
    if (threadSafePointers) {
      return word_.compare_exchange_weak(seen, next, std::memory_order_acq_rel,
                                         std::memory_order_acquire);
    }
    word_.store(next, std::memory_order_relaxed);
    return true;
  }

  // Adds one reference and returns the low half of the word with it.
  U32 referenceAdd() const noexcept {
    U64 now = 0;
    if (threadSafePointers) {
      // Relaxed: the caller owns a reference already, or holds the lock of the table that does, so
      // the object cannot disappear and its content is visible to the caller.
      now = word_.fetch_add(1, std::memory_order_relaxed) + 1;
    } else {
      now = word_.load(std::memory_order_relaxed) + 1;
      word_.store(now, std::memory_order_relaxed);
    }
    if (isSaturated(now)) [[unlikely]]
      saturate(now);
    return static_cast<U32>(now);
  }

  // Drops one reference and returns the low half of the remaining word. Release, so that the owner
  // of the last reference sees what this thread did to the object; acquire, because the caller may
  // be that owner. The caller destroys the object if the remaining count is 0. References to a
  // saturated object are not dropped.
  U32 referenceSubtract() const noexcept {
    U64 left = 0;
    if (threadSafePointers) {
      left = word_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    } else {
      left = word_.load(std::memory_order_relaxed) - 1;
      word_.store(left, std::memory_order_relaxed);
    }
    if (isSaturated(left + 1)) [[unlikely]]
      saturate(left);
    return static_cast<U32>(left);
  }

  // Drops one reference with a plain store and returns the low half of the remaining word. Requires
  // that the word equals `seen`, that it is not saturated, and that no other thread changes it:
  // thread-safe pointer mode is off.
  U32 referenceSubtractPlain(U64 seen) const noexcept {
    word_.store(seen - 1, std::memory_order_relaxed);
    return static_cast<U32>(seen - 1);
  }

  // Sets or clears the bits of `flag` without losing a concurrent change of the count. Atomic in
  // thread-safe pointer mode only, like the counting.
  void flagIs(U32 flag, bool on) const noexcept;

 private:
  void saturate(U64 now) const noexcept;

  // Mutable, since a pointer to a const object counts references, too.
  mutable std::atomic<U64> word_{0};
};

// The base of every object that Kiv::Ptr shares. A new object has no reference. The first Ptr adds
// one, and the thread that drops the last reference destroys the object.
class OV_EXPORT PtrInterface : public VFPtrInterface {
 public:
  // Ptr, PtrConst, RawPtr and RawPtrConst to objects of any class.
  KIV_POINTERS(PtrInterface)
  // The class whose referencesIncReturnRef() and referencesDec() count for this object. A derived
  // class with rules of its own redefines the name, and Kiv::Ptr refuses conversions between
  // classes with different rules at compile time.
  using ReferenceRules = PtrInterface;

  // The observers of this object, owned by the object; null for a class without observers, which
  // is the default. Threads: see Kiv/NotifieeList.h.
  virtual NotifieeList* notifieeList() const noexcept;
  // Switches the notification of observers on or off. Off in a new object; most factories switch it
  // on. Thread-safe in thread-safe pointer mode.
  virtual void hasNotificationActiveIs(bool on) noexcept;
  // Called once, by the thread that dropped the last reference. Destroys the object and frees its
  // memory; the default is `delete this`. Overridden by classes with another allocation.
  virtual void zeroReferencesIs() noexcept;
  // The type record under which the object was allocated and counted (Kiv/Type.h). Valid forever.
  virtual const Type& fwkType() const noexcept = 0;
  // Called by zeroReferencesIs() only; users drop their references instead.
  virtual ~PtrInterface() = default;

  // Whether changes of this object are notified to its observers now.
  bool hasNotificationActive() const noexcept { return (word() & notificationActiveFlag) != 0; }

  // Adds a reference; returns the number of references after that. Called by Kiv::Ptr. Const,
  // because counting does not change the content.
  U32 referencesIncReturnRef() const noexcept { return referenceAdd() & countMask; }
  // Drops a reference and destroys the object if it was the last one. Returns the number of
  // references after that; if it is 0, the object no longer exists. Called by Kiv::Ptr.
  U32 referencesDec() const noexcept {
    const U32 left = referenceSubtract() & countMask;
    if (left == 0) const_cast<PtrInterface*>(this)->zeroReferencesIs();
    return left;
  }

 protected:
  // An object without references, and with notification off.
  PtrInterface() noexcept = default;
  // The same with an upper half of the reference word that is not zero.
  explicit PtrInterface(U32 high) noexcept : VFPtrInterface(high) {}
};

}  // namespace Kiv

// For the body of a shared class, first in it: declares the pointer names, the type record, and
// allocation from the pool, counted under that record. Leaves the access at `private:`. An object
// may be deleted through a base class: the record is that of its most derived class.
#define KIV_OBJECT(Class)                                                \
 public:                                                                 \
  KIV_POINTERS(Class)                                                    \
  static ::Kiv::Type& kivType() noexcept;                                \
  const ::Kiv::Type& fwkType() const noexcept override;                  \
  static void* operator new(std::size_t size) {                          \
    static_assert(alignof(Class) <= ::Kiv::pooledAlignment);             \
    return ::Kiv::kivMemAlloc(size, kivType());                          \
  }                                                                      \
  static void operator delete(void* memory, std::size_t size) noexcept { \
    ::Kiv::kivMemDealloc(memory, size, kivType());                       \
  }                                                                      \
                                                                         \
 private:

// Defines the type record that KIV_OBJECT declared, under the name `Class`. For the source file and
// the namespace of the class. The record is constant-initialised, so it is usable before main().
#define KIV_OBJECT_DEFINE(Class)                 \
  ::Kiv::Type& Class::kivType() noexcept {       \
    static constinit ::Kiv::Type record{#Class}; \
    return record;                               \
  }                                              \
  const ::Kiv::Type& Class::fwkType() const noexcept { return kivType(); }

#endif
