// An interned type for tests of the protocol: a number, whose hash a test can choose. Counts the
// objects that exist.
#ifndef TESTS_PLATFORM_DORN_TESTHANDLE_H
#define TESTS_PLATFORM_DORN_TESTHANDLE_H

#include <atomic>
#include <functional>

#include "Dorn/DedupHandle.h"
#include "Dorn/DedupHashTable.h"
#include "Kiv/Hash.h"

namespace DornTest {

// The content record of a Number.
struct NumberContent : Dorn::DedupContentHandle {
  explicit NumberContent(U32 n) : number(n) {}
  U32 number;
};

// Makes the protected operations of a handle public, so that tests can reach every state.
class Number : public Dorn::DedupHandle {
  KIV_OBJECT(Number)

 public:
  // The objects that exist.
  static inline std::atomic<int> alive{0};
  // Numbers share a hash if they are equal modulo this; 0 selects a good hash.
  static inline U32 hashModulus = 0;

  // A private handle.
  static Ptr make(U32 number) { return Ptr(new Number(number)); }
  static U32 hashOf(U32 number) {
    return hashModulus == 0 ? Kiv::hashSingleAttr(0, number) : number % hashModulus;
  }

  U32 number() const { return number_; }
  U32 hash() const override { return hashOf(number_); }
  bool compare(Dorn::DedupHandle::RawPtrConst other) const override {
    return static_cast<const Number*>(other)->number_ == number_;
  }
  bool compareByContent(const Dorn::DedupContentHandle& key) const override {
    return static_cast<const NumberContent&>(key).number == number_;
  }
  using Dorn::DedupHandle::dedupStateIs;
  using Dorn::DedupHandle::notableIs;

  // Called by the destructor. A test can also store references in it that die with the number.
  std::function<void()> onDestroy;

 protected:
  explicit Number(U32 number) : number_(number) { ++alive; }
  // Changes the number, so that a test notices a read after destruction.
  ~Number() override {
    --alive;
    number_ = ~number_;
    if (onDestroy) onDestroy();
  }

 private:
  U32 number_;
};

// Interns a new handle, without a lookup before.
inline Number::Ptr intern(const Dorn::DedupHashTable::Ptr& table, U32 number) {
  return Kiv::staticPtrCast<Number>(table->dedup(Number::make(number)));
}
// The member, or null.
inline Number::Ptr find(const Dorn::DedupHashTable::Ptr& table, U32 number) {
  return Kiv::staticPtrCast<Number>(
      table->lookupByContent(NumberContent(number), Number::hashOf(number)));
}
inline Dorn::DedupHashTable::Ptr newTable(bool threadSafe = false) {
  return Dorn::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(threadSafe);
}

// Switches thread-safe pointers on for its lifetime.
class ThreadSafePointers {
 public:
  ThreadSafePointers() { Kiv::VFPtrInterface::threadSafePointers = true; }
  ~ThreadSafePointers() { Kiv::VFPtrInterface::threadSafePointers = false; }
};

}  // namespace DornTest

#endif
