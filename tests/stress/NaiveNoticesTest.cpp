#include "tests/stress/Naive.h"

namespace Stress {
namespace {

// Counts notifications by value. At no time may there be two members of one value.
class Notices {
 public:
  void inserted(U32 value) {
    if (++present_[value] != 1) wrong_ = true;
  }
  void removed(U32 value) {
    if (--present_[value] != 0) wrong_ = true;
  }
  bool isRight() const {
    for (const std::atomic<int>& members : present_) {
      if (members != 0) return false;
    }
    return !wrong_;
  }

 private:
  std::array<std::atomic<int>, fewNumbers> present_{};
  std::atomic<bool> wrong_{false};
};

// The naive variant notifies of an insertion after the table's lock is released, and of a removal
// when the member is destroyed. By then, a new member of the same value can be in the table.
class NaiveNotices : public NumberWorld<DornTest::Number> {
 public:
  Number::Ptr intern(U32 value) {
    const Number::Ptr made = Number::make(value);
    made->onDestroy = [this, value, number = made.ptr()] {
      if (number->everDeduped()) notices_.removed(value);
    };
    Number::Ptr got = Kiv::staticPtrCast<Number>(table()->dedup(made));
    dawdle();
    if (got == made) notices_.inserted(value);
    return got;
  }
  bool isRight() const { return NumberWorld::isRight() && notices_.isRight(); }

 private:
  Notices notices_;
};

class Observer final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(Observer)

 public:
  void handleInsert(const Dorn::DedupHandle::Ptr& handle) override {
    notices.inserted(value(*handle));
  }
  void handleRemove(Dorn::DedupHandle* handle) override { notices.removed(value(*handle)); }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  Notices notices;

 private:
  static U32 value(const Dorn::DedupHandle& handle) {
    return static_cast<const DornTest::Number&>(handle).number();
  }
};
KIV_OBJECT_DEFINE(Observer)

// The library's way: the observer is registered with the table.
class OurNotices : public NumberWorld<DornTest::Number> {
 public:
  OurNotices() { table()->lifeTimeNotifieeIs(observer_); }
  bool isRight() const { return NumberWorld::isRight() && observer_->notices.isRight(); }

 private:
  const Observer::Ptr observer_{new Observer};
};

TEST(Naive, NoticesAfterTheLock) {
  naiveBreaksAndOursHolds(Schedule<NaiveNotices>::run, Schedule<OurNotices>::run);
}

}  // namespace
}  // namespace Stress
