#include "tests/stress/Naive.h"

namespace Stress {
namespace {

// Gives up its reference first, and goes to the table when it finds that only the
// table's is left: by then another thread may have found it there, released it and
// destroyed it.
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
    referenceAdd();  // for the table to give up
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
