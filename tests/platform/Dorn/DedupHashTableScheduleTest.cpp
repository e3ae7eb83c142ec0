// Races of the interning protocol, made to happen each time: the delay points hold one thread up
// while the other one runs. Only in builds with OVBGP_DELAYS.
#include "Dorn/DelayPoint.h"

#ifdef OVBGP_DELAYS

#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "tests/platform/Dorn/TestHandle.h"

namespace DornTest {
namespace {

// A user and the lifetime notifier release the same member. The user's release leaves only the
// references of table and notifier, so it removes the member. It drops the table's reference
// while the notifier's release waits for the shard's lock.
struct LastTwo {
  std::latch unlinking{1};
  std::latch waiting{1};
  std::latch gone{1};
};
LastTwo* lastTwo = nullptr;
thread_local Dorn::DelayPoint heldUpAt = Dorn::DelayPoint::notification;

void meet(Dorn::DelayPoint point) {
  if (point != heldUpAt) return;
  if (point == Dorn::DelayPoint::unlink) {
    lastTwo->unlinking.count_down();
    lastTwo->waiting.wait();
  } else {
    lastTwo->waiting.count_down();
    lastTwo->gone.wait();
  }
}

TEST(DedupHashTableSchedule, LastReleaseOfAMemberThatLeftWhileItWaited) {
  const ThreadSafePointers on;
  LastTwo meeting;
  lastTwo = &meeting;
  const auto table = newTable(true);
  Number::Ptr user = intern(table, 1);
  Number::Ptr notifier = user;
  notifier->haveLifeTimeNotifierIs(true);
  Dorn::delayHook = meet;
  std::thread other([&] {
    heldUpAt = Dorn::DelayPoint::unlink;
    user = nullptr;
    meeting.gone.count_down();
  });
  meeting.unlinking.wait();
  notifier->haveLifeTimeNotifierIs(false);
  heldUpAt = Dorn::DelayPoint::lock;
  notifier = nullptr;
  other.join();
  Dorn::delayHook = nullptr;
  heldUpAt = Dorn::DelayPoint::notification;
  EXPECT_EQ(0U, table->size());
  EXPECT_EQ(0, Number::alive);
}

// Counts the notices of insertions and removals.
class Visitor : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(Visitor)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>&) override { ++came; }
  void handleRemove(Dorn::DedupHandle*) override { ++went; }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  U32 came = 0;
  U32 went = 0;
};
KIV_OBJECT_DEFINE(Visitor)

// A release has seen no observer, but an observer is registered before the release has locked the
// shard.
Dorn::DedupHashTable* visited = nullptr;
Visitor* visitor = nullptr;

void visit(Dorn::DelayPoint point) {
  if (point != Dorn::DelayPoint::lock) return;
  Dorn::delayHook = nullptr;
  visited->lifeTimeNotifieeIs(Dorn::DedupHashTableLifeTimeNotifiee::Ptr(visitor));
}

TEST(DedupHashTableSchedule, ObserverIsRegisteredWhileTheLastReleaseWaits) {
  const auto table = newTable(true);
  const Kiv::Ptr<Visitor> observer(new Visitor);
  visited = table.ptr();
  visitor = observer.ptr();
  Number::Ptr user = intern(table, 1);
  Dorn::delayHook = visit;
  user = nullptr;
  EXPECT_EQ(1U, observer->came);
  EXPECT_EQ(1U, observer->went);
  EXPECT_EQ(0, Number::alive);
  table->lifeTimeNotifieeDel();
}

}  // namespace
}  // namespace DornTest

#endif
