#include "tests/stress/Naive.h"

namespace Stress {
namespace {

// The naive variant decrements the reference count first, and locks the table only if the count
// has reached the idle count. In between, another thread can find the member in the table,
// release it and destroy it.
class NaiveRelease final : public DornTest::Number {
  KIV_OBJECT(NaiveRelease)

 public:
  using ReferenceRules = NaiveRelease;

  static Dorn::DedupHandle::Ptr make(U32 number) {
    return Dorn::DedupHandle::Ptr(new NaiveRelease(number));
  }

  U32 referencesDec() const noexcept {
    const U32 left = referenceSubtract() & countMask;
    if (left == 0) {
      const_cast<NaiveRelease*>(this)->zeroReferencesIs();
      return 0;
    }
    if (left != 1 || !isDeduped()) return left;
    dawdle();
    referenceAdd();  // so that the table can drop it
    return Number::referencesDec();
  }

 private:
  using Number::Number;
};
KIV_OBJECT_DEFINE(NaiveRelease)

TEST(Naive, ReleaseThatDecidesAfterItHasGivenUp) {
  naiveBreaksAndOursHolds(Schedule<NumberWorld<NaiveRelease>>::run,
                          Schedule<NumberWorld<DornTest::Number>>::run);
}

}  // namespace
}  // namespace Stress
