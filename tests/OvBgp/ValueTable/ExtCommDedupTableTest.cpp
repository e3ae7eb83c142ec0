#include "OvBgp/ValueTable/ExtCommDedupTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/Parse/ExtComm.h"
#include "tests/OvBgp/Value/ExtCommValues.h"

namespace Routing::Bgp {
namespace {

// A type rule that counts its calls. `meanwhile`, if set, runs once during a call, as another
// thread could between a lookup and the insertion after it.
class CountingQosRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(CountingQosRule)

 public:
  CountingQosRule()
      : BgpParseExtendedCommunityTypeRuleBase(BgpParseExtCommControl(),
                                              extCommPktTypeTransQosMarking) {}
  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    ++parsed;
    if (const auto once = std::exchange(meanwhile, nullptr)) once();
    return extCommFactory(extCommClassificationUnSpecified, content);
  }

  mutable int parsed = 0;
  mutable std::function<void()> meanwhile;
};
KIV_OBJECT_DEFINE(CountingQosRule)

// An observer of the table's set of route targets. It maintains its own copy of the set by notices
// alone, so that the two can be compared, and runs the test's handler under the notification lock.
class TargetObserver : public Kiv::Notifiee {
 public:
  explicit TargetObserver(const ExtCommDedupTable::Ptr& table)
      : list_(table->producerRtList().ptr()) {
    notifierIs(list_->notifieeList());
  }
  void handleChange(const Kiv::Change& change) override {
    const U64 value = change.key<RouteTarget>().value();
    const bool isThere = list_->rtHas(RouteTarget(value));
    ++(isThere ? came : went);
    if (isThere) {
      present.insert(value);
    } else {
      present.erase(value);
    }
    if (handler) handler(value, isThere);
  }

  int came = 0;
  int went = 0;
  std::set<U64> present;
  std::function<void(U64, bool)> handler;

 private:
  NotifyingRouteTargetList* const list_;
};

class ExtCommDedupTableTest : public testing::Test {
 protected:
  ExtComm::PtrConst intern(U64 value) {
    return ExtComm::dedupContent(table_.ptr(), ExtCommContent(value));
  }
  std::set<U64> listed() const {
    std::set<U64> values;
    for (const RouteTarget& target : table_->producerRtList()->rt()) values.insert(target.value());
    return values;
  }

  const BgpParseExtCommContainerSm::Ptr parser_ = bgpParseExtCommContainerSmFactory();
  ExtCommDedupTable::Ptr table_ = extCommDedupTableFactory(parser_->extCommParser());
};

TEST_F(ExtCommDedupTableTest, EqualValuesShareOneObjectForAsLongAsItIsUsed) {
  EXPECT_TRUE(table_->hasNotificationActive());
  EXPECT_EQ(parser_->extCommParser(), table_->parseExtCommRule());
  auto first = intern(routeTargetA);
  EXPECT_EQ(first, intern(routeTargetA));
  EXPECT_TRUE(first->isDeduped());
  EXPECT_TRUE(first->hasNotificationActive());
  EXPECT_FALSE(first->haveLifeTimeNotifier());
  EXPECT_EQ(ExtComm::hashOf(ExtCommContent(routeTargetA)), first->hash());
  EXPECT_EQ(extCommClassificationRouteTarget, first->classification());
  EXPECT_EQ(2U, first->references());

  const auto other = intern(routeTargetA + 1);
  EXPECT_NE(first, other);
  EXPECT_EQ(2U, table_->size());
  first = nullptr;
  EXPECT_EQ(1U, table_->size());
  EXPECT_EQ(routeTargetA, intern(routeTargetA)->getContent().value());
  EXPECT_EQ(1U, table_->size());
}

TEST_F(ExtCommDedupTableTest, ParsesOnAMissAlone) {
  const CountingQosRule::Ptr rule(new CountingQosRule);
  parser_->extCommParser()->typeRuleIs(rule);
  const auto held = intern(qos);
  EXPECT_EQ(1, rule->parsed);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(held, intern(qos));
  EXPECT_EQ(1, rule->parsed);
}

TEST_F(ExtCommDedupTableTest, WhoIsInternedWhileAnotherIsBuiltIsTheOne) {
  const CountingQosRule::Ptr rule(new CountingQosRule);
  parser_->extCommParser()->typeRuleIs(rule);
  ExtComm::PtrConst first;
  rule->meanwhile = [&] { first = intern(qos); };
  const U64 objects = ExtComm::kivType().objects();
  EXPECT_EQ(intern(qos), first);
  EXPECT_EQ(2, rule->parsed);
  EXPECT_EQ(objects + 1, ExtComm::kivType().objects());
}

TEST_F(ExtCommDedupTableTest, TheListHoldsTheRouteTargetsThatAreInterned) {
  TargetObserver observer(table_);
  auto a = intern(routeTargetA);
  auto again = intern(routeTargetA);
  auto b = intern(routeTargetB);
  const auto c = intern(0x0202'0001'0000'0001);
  const std::vector<ExtComm::PtrConst> notTargets = {intern(colorA), intern(0x0003'fde8'0000'0064),
                                                     intern(0x0602'0000'0000'0000),
                                                     intern(0x4002'fde8'0000'0064), intern(0)};
  EXPECT_EQ((std::set<U64>{routeTargetA, routeTargetB, 0x0202'0001'0000'0001}), listed());
  EXPECT_EQ(3, observer.came);
  EXPECT_EQ(8U, table_->size());
  a = nullptr;
  EXPECT_EQ(3U, listed().size());
  again = nullptr;
  b = nullptr;
  EXPECT_EQ((std::set<U64>{0x0202'0001'0000'0001}), listed());
  EXPECT_EQ(listed(), observer.present);
  EXPECT_EQ(2, observer.went);
}

TEST_F(ExtCommDedupTableTest, AnObserverMayBringARouteTargetBack) {
  TargetObserver observer(table_);
  std::vector<ExtComm::PtrConst> kept;
  observer.handler = [&](U64 value, bool isThere) {
    if (isThere || !kept.empty()) return;
    EXPECT_EQ(0U, table_->size());
    EXPECT_TRUE(listed().empty());
    kept.push_back(intern(value));
  };
  const ExtComm* const old = intern(routeTargetA).ptr();
  ASSERT_EQ(1U, kept.size());
  EXPECT_NE(old, kept[0].ptr()) << "the old one was still there when the new one was made";
  EXPECT_TRUE(kept[0]->isDeduped());
  EXPECT_EQ(kept[0], intern(routeTargetA));
  EXPECT_EQ((std::set<U64>{routeTargetA}), listed());
  EXPECT_EQ(2, observer.came);
  EXPECT_EQ(1, observer.went);
  kept[0] = nullptr;
  EXPECT_TRUE(listed().empty());
}

// A value that an observer refuses is neither in the table nor in the set. Observers that were
// notified of the addition before the exception are notified of the removal.
TEST_F(ExtCommDedupTableTest, AnObserverThatThrowsUndoesTheInterning) {
  TargetObserver before(table_);
  TargetObserver throwing(table_);
  throwing.handler = [](U64, bool isThere) {
    if (isThere) throw std::runtime_error("refused");
  };
  EXPECT_THROW(intern(routeTargetA), std::runtime_error);
  EXPECT_EQ(0U, table_->size());
  EXPECT_TRUE(listed().empty());
  EXPECT_TRUE(before.present.empty());
  EXPECT_EQ(1, before.came);
  throwing.notifierIs(nullptr);
  const auto a = intern(routeTargetA);
  EXPECT_EQ((std::set<U64>{routeTargetA}), listed());
}

TEST_F(ExtCommDedupTableTest, ATableThatGoesLeavesItsValuesAndEmptiesItsList) {
  TargetObserver observer(table_);
  const auto a = intern(routeTargetA);
  const auto list = table_->producerRtList();
  const auto inner = table_->dedupTable();
  table_ = nullptr;
  EXPECT_EQ(0U, list->rt().size());
  EXPECT_TRUE(observer.present.empty());
  EXPECT_EQ(routeTargetA, a->getContent().value());

  // A user may keep the inner table. It still interns, but no longer maintains the set.
  const auto made =
      inner->dedup(parser_->extCommParser()->parseExtendedCommunity(ExtCommContent(routeTargetB)));
  EXPECT_TRUE(made->isDeduped());
  EXPECT_EQ(0U, list->rt().size());
}

TEST_F(ExtCommDedupTableTest, DumpIsTheInnerTables) {
  const auto a = intern(routeTargetA);
  std::ostringstream all;
  table_->dumpState(Dorn::dumpContextFactory(all), 3);
  std::ostringstream inner;
  table_->dedupTable()->dumpState(Dorn::dumpContextFactory(inner), 3);
  EXPECT_EQ(inner.str(), all.str());
  EXPECT_NE("", all.str());
}

TEST(ExtCommDedupTableDeathTest, NothingIsParsedWithoutRules) {
  const auto table = extCommDedupTableFactory(nullptr);
  EXPECT_DEATH(ExtComm::dedupContent(table.ptr(), ExtCommContent(1)), "parseExtCommRule");
}

class ExtCommIp6DedupTableTest : public testing::Test {
 protected:
  ExtCommIp6::PtrConst intern(U8 type, U16 localAdmin) {
    const Ovnet::Ip6Addr addr(std::string_view("2001:db8::1"));
    return ExtCommIp6::dedupContent(table_.ptr(), ExtCommIp6Content(type, 2, addr, localAdmin));
  }

  const BgpParseExtCommContainerSm::Ptr parser_ = bgpParseExtCommContainerSmFactory();
  ExtCommIp6DedupTable::Ptr table_ = extCommIp6DedupTableFactory(parser_->extCommParser());
};

TEST_F(ExtCommIp6DedupTableTest, EqualValuesShareOneObjectForAsLongAsItIsUsed) {
  EXPECT_EQ(parser_->extCommParser(), table_->parseExtCommRule());
  auto first = intern(0, 10);
  const auto second = intern(0, 11);
  EXPECT_EQ(first, intern(0, 10));
  EXPECT_NE(first, second);
  EXPECT_TRUE(first->isDeduped());
  EXPECT_EQ(extCommClassificationUnSpecified, first->classification());
  EXPECT_FALSE(first->pktSubtype().isUnspecified());
  EXPECT_FALSE(intern(0x40, 10)->pktSubtype().isUnspecified());
  EXPECT_TRUE(intern(7, 10)->pktSubtype().isUnspecified());
  EXPECT_EQ(2U, table_->size());
  first = nullptr;
  EXPECT_EQ(1U, table_->size());
  std::ostringstream dump;
  table_->dumpState(Dorn::dumpContextFactory(dump), 0);
  EXPECT_NE(Kiv::String::npos, dump.str().find("#1;"));
  table_ = nullptr;
  EXPECT_EQ(11, second->getContent().localAdmin());
}

TEST_F(ExtCommIp6DedupTableTest, FindsAMemberByContentAndHash) {
  const auto member = intern(0, 10);
  const ExtCommIp6Content content = member->getContent();
  EXPECT_EQ(member.ptr(), table_->lookupByContent(content, content.hash()).ptr());
  const ExtCommIp6Content other(0, 2, content.addr(), 11);
  EXPECT_EQ(nullptr, table_->lookupByContent(other, other.hash()));
}

// Counts the members that it is told of.
class MemberCounter final : public Dorn::DedupHashTableLifeTimeNotifiee {
  KIV_OBJECT(MemberCounter)

 public:
  void handleInsert(const Dorn::DedupHandle::Ptr&) override { ++members; }
  void handleRemove(Dorn::DedupHandle*) override { --members; }
  void handleNotificationStop(const Kiv::Ptr<const Dorn::DedupHashTable>&) override {}

  int members = 0;
};
KIV_OBJECT_DEFINE(MemberCounter)

TEST_F(ExtCommIp6DedupTableTest, MembersAreListedAndObserved) {
  const MemberCounter::Ptr counter(new MemberCounter);
  table_->lifeTimeNotifieeIs(counter);
  auto first = intern(0, 10);
  const auto second = intern(0, 11);
  EXPECT_EQ(2, counter->members);
  EXPECT_EQ(2U, table_->members().size());
  first = nullptr;
  EXPECT_EQ(1, counter->members);
  ASSERT_EQ(1U, table_->members().size());
  EXPECT_EQ(second.ptr(), table_->members()[0].ptr());
  table_->lifeTimeNotifieeIs(nullptr);
  (void)intern(0, 12);
  EXPECT_EQ(1, counter->members);
}

}  // namespace
}  // namespace Routing::Bgp
