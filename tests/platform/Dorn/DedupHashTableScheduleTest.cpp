// Threads that meet exactly where it matters, each time.
#include "Dorn/DelayPoint.h"

#ifdef OVBGP_DELAYS

#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "tests/platform/Dorn/TestHandle.h"

namespace DornTest {
namespace {

// A user and the lifetime notifier let go of a member: the user's release finds that
// only the table and the notifier are left, and takes the member out and drops the
// table's reference while the notifier's waits for the lock.
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

}  // namespace
}  // namespace DornTest

#endif
