#include <vector>

#include "tests/stress/Naive.h"

namespace Stress {
namespace {

// The naive variant reads whether a notifier holds a reference, and so the idle count, before it
// reads the reference count. Each read is atomic, but the notifier can change in between. Then
// a member without users stays in the table for ever.
class NaiveThreshold final : public DornTest::Number {
  KIV_OBJECT(NaiveThreshold)

 public:
  using ReferenceRules = NaiveThreshold;

  static Dorn::DedupHandle::Ptr make(U32 number) {
    return Dorn::DedupHandle::Ptr(new NaiveThreshold(number));
  }

  U32 referencesDec() const noexcept {
    const U32 idle = haveLifeTimeNotifier() ? 2 : 1;
    dawdle();
    for (U32 seen = word(); (seen & countMask) - 1 != idle;) {
      if (referenceSubtractFrom(seen)) return (seen - 1) & countMask;
    }
    return Number::referencesDec();
  }

 private:
  using Number::Number;
};
KIV_OBJECT_DEFINE(NaiveThreshold)

// Two threads release the same members: one as the user, one as the notifier.
template <class SomeNumber>
bool letGo(unsigned seed) {
  using Held = std::vector<Kiv::Ptr<SomeNumber>>;
  NumberWorld<SomeNumber> world;
  for (U32 round = 0; round < 20; ++round) {
    Held byUser;
    for (U32 i = 0; i < 50; ++i) byUser.push_back(world.intern(seed + 50 * round + i));
    Held byNotifier(byUser);
    for (const auto& number : byNotifier) number->haveLifeTimeNotifierIs(true);
    inThreads(2, [&](unsigned thread) {
      Held& held = thread == 0 ? byUser : byNotifier;
      for (auto& number : held) {
        dawdle();
        if (thread == 1) number->haveLifeTimeNotifierIs(false);
        number = nullptr;
      }
    });
    if (!world.isRight()) return false;
  }
  return true;
}

TEST(Naive, ThresholdReadBeforeTheCount) {
  naiveBreaksAndOursHolds(letGo<NaiveThreshold>, letGo<DornTest::Number>);
}

}  // namespace
}  // namespace Stress
