// The base of every shared object: an intrusive reference count, two flags in
// the same word, and what the framework asks of an object.
#ifndef KIV_PTRINTERFACE_H
#define KIV_PTRINTERFACE_H

#include <atomic>
#include <cstddef>

#include "Kiv/CacheLine.h"
#include "Kiv/Export.h"
#include "Kiv/Pool.h"
#include "Kiv/Ptr.h"
#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace Kiv {

class NotifieeList;

// The reference word.  Bits of `countMask` count; the two others are flags, kept
// here so that a decision that needs count and flag can take both in one read.
class OV_EXPORT VFPtrInterface {
 public:
  // The process-wide thread-safe pointer mode: counts change by atomic
  // read-modify-write while it is on, by plain arithmetic while it is off.  The
  // host sets it once, while it has one thread, and before it builds tables; it
  // is a switch apart from OvBgpGlobals::multiThreaded().
  static bool threadSafePointers;

  static constexpr U32 countMask = 0x5FFFFFFF;
  // The count must not run into the flag above it.
  static constexpr U32 maxReferences = 0x1FFFFFFF;

  VFPtrInterface(const VFPtrInterface&) = delete;
  VFPtrInterface& operator=(const VFPtrInterface&) = delete;

  // References held now.  A snapshot: other threads may be changing it.
  U32 references() const noexcept { return word() & countMask; }

  // How a new object begins whose maker adopts its first reference and that tells its
  // observers of changes. Requires: nobody has seen it yet.
  void beginNotifying() noexcept {
    word_.store(notificationActiveFlag | 1, std::memory_order_relaxed);
  }

 protected:
  static constexpr U32 notificationActiveFlag = 0x80000000;
  static constexpr U32 lifeTimeNotifierFlag = 0x20000000;

  VFPtrInterface() noexcept = default;
  ~VFPtrInterface() = default;

  U32 word() const noexcept { return word_.load(std::memory_order_acquire); }
  // Says that the word will be looked at and then changed, as other threads do, too.
  void wordPrefetch() const noexcept { prefetchToWrite(&word_); }

  // Takes one more reference; returns the word with it.
  U32 referenceAdd() const noexcept {
    U32 now = 0;
    if (threadSafePointers) {
      // Relaxed: whoever adds already has a reference, or the table's lock.
      now = word_.fetch_add(1, std::memory_order_relaxed) + 1;
    } else {
      now = word_.load(std::memory_order_relaxed) + 1;
      word_.store(now, std::memory_order_relaxed);
    }
    if ((now & maxReferences) == 0) [[unlikely]]
      referencesExhausted();
    return now;
  }

  // Gives up one reference; returns the word that is left.  Acquire and release:
  // the last one to leave sees what all others did to the object.
  U32 referenceSubtract() const noexcept {
    if (threadSafePointers) return word_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    const U32 left = word_.load(std::memory_order_relaxed) - 1;
    word_.store(left, std::memory_order_relaxed);
    return left;
  }

  // Gives up one reference unless the word is no longer `seen`, which then becomes
  // the word as it is now.  May fail without a reason.
  bool referenceSubtractFrom(U32& seen) const noexcept {
    return word_.compare_exchange_weak(seen, seen - 1, std::memory_order_release,
                                       std::memory_order_relaxed);
  }

  // The same for a count that is `seen` and that no other thread changes.
  U32 referenceSubtractPlain(U32 seen) const noexcept {
    word_.store(seen - 1, std::memory_order_relaxed);
    return seen - 1;
  }

  void flagIs(U32 flag, bool on) const noexcept;

 private:
  [[noreturn]] static void referencesExhausted() noexcept;

  mutable std::atomic<U32> word_{0};
};

// Base of every object that Kiv::Ptr shares.  New objects have no reference; the
// first Ptr takes one, and the last one to go destroys the object.
class OV_EXPORT PtrInterface : public VFPtrInterface {
 public:
  KIV_POINTERS(PtrInterface)
  // Names the class whose reference operations count for this object: a counted
  // pointer never converts to one that would count by other rules.
  using ReferenceRules = PtrInterface;

  // The observers of this object; null for a kind that has none.
  virtual NotifieeList* notifieeList() const noexcept;
  // Whether changes of this object are told to observers.
  virtual void hasNotificationActiveIs(bool on) noexcept;
  // Called when the last reference has gone; destroys the object.
  virtual void zeroReferencesIs() noexcept;
  // The type record under which the object was allocated.
  virtual const Type& fwkType() const noexcept = 0;
  virtual ~PtrInterface() = default;

  bool hasNotificationActive() const noexcept { return (word() & notificationActiveFlag) != 0; }

  // Both return the references held after the change.
  U32 referencesIncReturnRef() const noexcept { return referenceAdd() & countMask; }
  U32 referencesDec() const noexcept {
    const U32 left = referenceSubtract() & countMask;
    if (left == 0) const_cast<PtrInterface*>(this)->zeroReferencesIs();
    return left;
  }

 protected:
  PtrInterface() noexcept = default;
};

}  // namespace Kiv

// In the body of a shared class: its pointer names, its type record and
// allocation under that record.  KIV_OBJECT_DEFINE, in the class's source file
// and namespace, gives the record its name.
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

#define KIV_OBJECT_DEFINE(Class)                 \
  ::Kiv::Type& Class::kivType() noexcept {       \
    static constinit ::Kiv::Type record{#Class}; \
    return record;                               \
  }                                              \
  const ::Kiv::Type& Class::fwkType() const noexcept { return kivType(); }

#endif
