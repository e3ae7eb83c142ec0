// Races of the interning protocol, made to happen each time: the delay points hold one thread up
// while the other one runs. Only in builds with OVBGP_DELAYS.
#include "Dorn/DelayPoint.h"

#ifdef OVBGP_DELAYS

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/platform/Dorn/TestHandle.h"

namespace DornTest {
namespace {

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
  const ThreadSafePointers on;
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

// An observer has lost its last reference and is about to be unregistered, when another observer is
// registered in its place. That one stays.
void succeed(Dorn::DelayPoint point) {
  if (point != Dorn::DelayPoint::unregister) return;
  Dorn::delayHook = nullptr;
  visited->lifeTimeNotifieeIs(Dorn::DedupHashTableLifeTimeNotifiee::Ptr(visitor));
}

TEST(DedupHashTableSchedule, EndOfAnObserverLeavesItsSuccessorRegistered) {
  const ThreadSafePointers on;
  const auto table = newTable(true);
  Kiv::Ptr<Visitor> former(new Visitor);
  const Kiv::Ptr<Visitor> successor(new Visitor);
  table->lifeTimeNotifieeIs(former);
  visited = table.ptr();
  visitor = successor.ptr();
  Dorn::delayHook = succeed;
  former = nullptr;
  intern(table, 1);
  EXPECT_EQ(1U, successor->came);
  EXPECT_EQ(1U, successor->went);
  table->lifeTimeNotifieeDel();
}

// A release has seen a member and is about to lock the shard, when the table is destroyed, and
// perhaps the next table takes the shell.
Kiv::Ptr<Dorn::DedupHashTable>* dying = nullptr;
bool remade = false;

void endTheTable(Dorn::DelayPoint point) {
  if (point != Dorn::DelayPoint::lock) return;
  Dorn::delayHook = nullptr;
  *dying = remade ? newTable(true) : nullptr;
}

TEST(DedupHashTableSchedule, TableIsDestroyedWhileTheLastReleaseWaits) {
  const ThreadSafePointers on;
  for (const bool again : {false, true}) {
    remade = again;
    auto table = newTable(true);
    dying = &table;
    Number::Ptr user = intern(table, 1);
    Dorn::delayHook = endTheTable;
    user = nullptr;
    EXPECT_EQ(0, Number::alive);
  }
}

// An observer refuses a member that another thread has found already. The finder's release has seen
// a handle outside all tables, when the maker interns the handle again and gives it up.
class Refuser final : public Visitor {
  KIV_OBJECT(Refuser)

 public:
  void handleInsert(const Kiv::Ptr<Dorn::DedupHandle>& handle) override {
    if (came++ > 0) return;
    found = handle;
    throw std::runtime_error("refused");
  }

  Dorn::DedupHandle::Ptr found;
};
KIV_OBJECT_DEFINE(Refuser)

Dorn::DedupHandle::Ptr* maker = nullptr;

void internAgain(Dorn::DelayPoint point) {
  if (point != Dorn::DelayPoint::decrement) return;
  Dorn::delayHook = nullptr;
  visited->dedup(*maker);
  *maker = nullptr;
}

TEST(DedupHashTableSchedule, RefusedHandleIsInternedAgainDuringAnothersRelease) {
  const ThreadSafePointers on;
  const auto table = newTable(true);
  const Kiv::Ptr<Refuser> observer(new Refuser);
  table->lifeTimeNotifieeIs(observer);
  Dorn::DedupHandle::Ptr made = Number::make(1);
  EXPECT_THROW(table->dedup(made), std::runtime_error);
  visited = table.ptr();
  maker = &made;
  Dorn::delayHook = internAgain;
  observer->found = nullptr;
  EXPECT_EQ(0U, table->size());
  EXPECT_EQ(0, Number::alive);
  EXPECT_EQ(1U, observer->went);
  table->lifeTimeNotifieeDel();
}

}  // namespace
}  // namespace DornTest

#endif
