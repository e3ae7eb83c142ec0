#include "OvBgp/NotifyingRouteTargetList.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"

namespace Routing::Bgp {
namespace {

// An observer that records each notice, with whether the set has the route target at that moment,
// and then runs the test's handler.
class TargetListObserver : public Kiv::Notifiee {
 public:
  explicit TargetListObserver(const NotifyingRouteTargetList::Ptr& list) : list_(list.ptr()) {
    notifierIs(list->notifieeList());
  }
  void handleChange(const Kiv::Change& change) override {
    EXPECT_EQ(NotifyingRouteTargetList::rtAttribute, change.attribute());
    const RouteTarget target = change.key<RouteTarget>();
    heard.emplace_back(target.value(), list_->rtHas(target));
    if (handler) handler(target);
  }

  std::vector<std::pair<U64, bool>> heard;
  std::function<void(const RouteTarget&)> handler;

 private:
  NotifyingRouteTargetList* const list_;
};

using HeardTargets = std::vector<std::pair<U64, bool>>;

TEST(NotifyingRouteTargetList, TellsOfChangesAndOnlyOfThose) {
  const auto list = notifyingRouteTargetListFactory();
  EXPECT_TRUE(list->hasNotificationActive());
  TargetListObserver observer(list);
  EXPECT_FALSE(list->rtDel(RouteTarget(1)));
  list->rtIs(RouteTarget(1));
  list->rtIs(RouteTarget(1));
  list->rtIs(RouteTarget(2));
  EXPECT_TRUE(list->rtDel(RouteTarget(1)));
  EXPECT_FALSE(list->rtDel(RouteTarget(1)));
  EXPECT_EQ((HeardTargets{{1, true}, {2, true}, {1, false}}), observer.heard);
  EXPECT_EQ(1U, list->rt().size());
}

TEST(NotifyingRouteTargetList, DelAllTellsOfEachAndKeepsWhatComesMeanwhile) {
  const auto list = notifyingRouteTargetListFactory();
  for (U64 value = 1; value <= 100; ++value) list->rtIs(RouteTarget(value));
  TargetListObserver observer(list);
  observer.handler = [&](const RouteTarget& target) {
    if (target.value() == 50) list->rtIs(RouteTarget(1000));
  };
  list->rtDelAll();
  EXPECT_EQ(101U, observer.heard.size());
  EXPECT_EQ(std::vector<RouteTarget>{RouteTarget(1000)}, list->rt().keys());
}

TEST(NotifyingRouteTargetList, AnObserverMayLetGoOfTheList) {
  auto list = notifyingRouteTargetListFactory();
  for (U64 value = 1; value <= 3; ++value) list->rtIs(RouteTarget(value));
  NotifyingRouteTargetList& raw = *list;
  TargetListObserver observer(list);
  observer.handler = [&](const RouteTarget&) { list = nullptr; };
  raw.rtDelAll();
  EXPECT_EQ(3U, observer.heard.size());
  EXPECT_EQ(0U, NotifyingRouteTargetList::kivType().objects());

  list = notifyingRouteTargetListFactory();
  TargetListObserver second(list);
  second.handler = [&](const RouteTarget&) { list = nullptr; };
  list.ptr()->rtIs(RouteTarget(1));
  EXPECT_EQ(0U, NotifyingRouteTargetList::kivType().objects());
}

// The set of a table. Observers behind one that throws hear of no insertion that fails, and of
// every removal.
TEST(NotifyingRouteTargetList, AnObserverThatThrowsRefusesInsertionsOnly) {
  const auto table = extCommDedupTableFactory(bgpParseExtCommContainerSmFactory()->extCommParser());
  const auto list = table->producerRtList();
  const ExtCommContent target(0x0002'0001'0000'0001);
  const auto refuse = [](const RouteTarget&) { throw std::runtime_error("refused"); };
  TargetListObserver throwing(list);
  TargetListObserver behind(list);
  throwing.handler = refuse;
  EXPECT_THROW(ExtComm::dedupContent(table.ptr(), target), std::runtime_error);
  EXPECT_EQ(0U, table->size());
  EXPECT_EQ(0U, list->rt().size());
  EXPECT_EQ(2U, throwing.heard.size());
  EXPECT_EQ(HeardTargets{}, behind.heard);
  throwing.handler = nullptr;
  ExtComm::PtrConst interned = ExtComm::dedupContent(table.ptr(), target);
  throwing.handler = refuse;
  interned = nullptr;
  EXPECT_EQ(0U, table->size());
  EXPECT_EQ((HeardTargets{{target.value(), true}, {target.value(), false}}), behind.heard);
}

TEST(NotifyingRouteTargetList, DumpIndentsItsLines) {
  const auto list = notifyingRouteTargetListFactory();
  const auto dump = [&list](U32 indent) {
    std::ostringstream out;
    list->dumpState(Dorn::dumpContextFactory(out), indent);
    return out.str();
  };
  EXPECT_EQ("NotifyingRouteTargetList #0:\n", dump(0));
  list->rtIs(RouteTarget(0x0202'0001'1170'0001));
  EXPECT_EQ("NotifyingRouteTargetList #1:\n  70000:1\n", dump(0));
  EXPECT_EQ("    NotifyingRouteTargetList #1:\n      70000:1\n", dump(4));
  list->rtIs(RouteTarget(5));
  EXPECT_NE(Kiv::String::npos, dump(0).find("\n  0x0000000000000005\n"));
}

}  // namespace
}  // namespace Routing::Bgp
