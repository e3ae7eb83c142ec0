// The base of every shared object: an intrusive reference count, two flags in the same word, and
// the operations that the framework expects of an object.
//
// The reference word, 32 bits, is changed as a whole, so that a decision that depends on the count
// and on a flag can read both at once:
//
//    31             30     29              28                                       0
//   +--------------+------+---------------+-----------------------------------------+
//   | notification | zero | lifetime-     | number of references, 0 to 0x1FFFFFFF   |
//   | active       |      | notifier held |                                         |
//   +--------------+------+---------------+-----------------------------------------+
//
// - Bit 31, notificationActiveFlag: changes of the object are notified to its observers.
// - Bit 30 belongs to countMask, but the count never reaches it.
// - Bit 29, lifeTimeNotifierFlag: a notifier object owns one of the counted references. Only
//   interned objects use this bit (Dorn/DedupHandle.h).
// - Bits 0 to 28: the count. An increment beyond maxReferences stops the process.
#ifndef KIV_PTRINTERFACE_H
#define KIV_PTRINTERFACE_H

#include <atomic>
#include <cstddef>

#include "Kiv/Detail/CacheLine.h"
#include "Kiv/Export.h"
#include "Kiv/Pool.h"
#include "Kiv/Ptr.h"
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
  // single thread. It is independent of OvBgpGlobals::multiThreaded().
  static bool threadSafePointers;

  // All bits of the word that are no flag. The hole at bit 29 is the lifetime-notifier flag. Bit 30
  // is included, but it is always 0, because the count stops at maxReferences.
  static constexpr U32 countMask = 0x5FFFFFFF;
  // The highest count. One more reference would carry into the lifetime-notifier flag, bit 29.
  static constexpr U32 maxReferences = 0x1FFFFFFF;

  // Not copyable: an object has an identity, and its references refer to one address.
  VFPtrInterface(const VFPtrInterface&) = delete;
  // Not assignable: the count belongs to the address, not to the content.
  VFPtrInterface& operator=(const VFPtrInterface&) = delete;

  // The number of references at this moment. A snapshot: other threads may change the count at any
  // time, so 1 proves that the object is unshared only if the caller owns that reference.
  U32 references() const noexcept { return word() & countMask; }

  // Initialises the word of a new object in one store: one reference, which the caller must adopt,
  // and active notification. Requires that no other thread has seen the object and that no
  // reference exists.
  void beginNotifying() noexcept {
    word_.store(notificationActiveFlag | 1, std::memory_order_relaxed);
  }

 protected:
  // Set while changes of the object are notified to its observers.
  static constexpr U32 notificationActiveFlag = 0x80000000;
  // Set while a notifier object owns one of the counted references.
  static constexpr U32 lifeTimeNotifierFlag = 0x20000000;

  // A word with no reference and no flag.
  VFPtrInterface() noexcept = default;
  // Not virtual and not public: objects are destroyed through PtrInterface only.
  ~VFPtrInterface() = default;

  // The whole word, count and flags, of one moment. Acquire: a reader of the count also sees what
  // the threads that released references before did to the object.
  U32 word() const noexcept { return word_.load(std::memory_order_acquire); }
  // Prefetches the cache line of the word for writing. Call it when the word will be read and then
  // changed soon and other cores change it, too.
  void referenceWordPrefetch() const noexcept { prefetchToWrite(&word_); }

  // Adds one reference and returns the word with it. Stops the process on overflow.
  //
  // The overflow is tested after the addition, because a test before it would not be atomic with
  // it. By then the carry has changed bit 29, or, if that flag was set, bit 30, and other threads
  // may have read the wrong flag. Therefore an exception is no option: the process must stop.
  U32 referenceAdd() const noexcept {
    U32 now = 0;
    if (threadSafePointers) {
      // Relaxed: the caller owns a reference already, or holds the lock of the table that does, so
      // the object cannot disappear and its content is visible to the caller.
      now = word_.fetch_add(1, std::memory_order_relaxed) + 1;
    } else {
      now = word_.load(std::memory_order_relaxed) + 1;
      word_.store(now, std::memory_order_relaxed);
    }
    if ((now & maxReferences) == 0) [[unlikely]]
      referencesExhausted();
    return now;
  }

  // Drops one reference and returns the remaining word. Release, so that the owner of the last
  // reference sees what this thread did to the object; acquire, because the caller may be that
  // owner. The caller destroys the object if the remaining count is 0.
  U32 referenceSubtract() const noexcept {
    if (threadSafePointers) return word_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    const U32 left = word_.load(std::memory_order_relaxed) - 1;
    word_.store(left, std::memory_order_relaxed);
    return left;
  }

  // Drops one reference if the word still equals `seen`, and returns true. Otherwise updates `seen`
  // to the current word and returns false, so that the caller can decide again. May fail
  // spuriously (weak compare-and-exchange). No acquire: the caller uses it only for references
  // that are not the last, and so destroys nothing.
  bool referenceSubtractFrom(U32& seen) const noexcept {
    return word_.compare_exchange_weak(seen, seen - 1, std::memory_order_release,
                                       std::memory_order_relaxed);
  }

  // Drops one reference with a plain store and returns the remaining word. Requires that the word
  // equals `seen` and that no other thread changes it: thread-safe pointer mode is off.
  U32 referenceSubtractPlain(U32 seen) const noexcept {
    word_.store(seen - 1, std::memory_order_relaxed);
    return seen - 1;
  }

  // Sets or clears the bits of `flag` without losing a concurrent change of the count. Atomic in
  // thread-safe pointer mode only, like the counting.
  void flagIs(U32 flag, bool on) const noexcept;

 private:
  [[noreturn]] static void referencesExhausted() noexcept;

  // Mutable, since a pointer to a const object counts references, too.
  mutable std::atomic<U32> word_{0};
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
