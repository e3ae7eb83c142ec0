#include "OvBgp/List/ExtCommListDedupTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Kiv/Trace.h"
#include "OvBgp/ExtCommIp6ListDedupTable.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "tests/OvBgp/Value/ExtCommValues.h"

namespace Routing::Bgp {
namespace {

using Notifier = RtExtCommListLifeTimeNotifier;
using Collection = NotifyingRtExtCommListCollection;

// An observer of the collection. It keeps a copy of the collection's contents, made from its
// notifications, and runs the test's handler, both under the notification lock.
class SubListObserver : public Kiv::Notifiee {
 public:
  explicit SubListObserver(const Collection::Ptr& collection) : collection_(collection.ptr()) {
    notifierIs(collection_->notifieeList());
  }
  void handleChange(const Kiv::Change& change) override {
    EXPECT_EQ(Collection::rtExtCommListAttribute, change.attribute());
    const auto& notifier = change.key<Notifier::Ptr>();
    const bool isThere = collection_->rtExtCommListHas(notifier);
    ++(isThere ? came : went);
    if (isThere) {
      present.insert(notifier.ptr());
    } else {
      present.erase(notifier.ptr());
    }
    if (handler) handler(notifier, isThere);
  }

  int came = 0;
  int went = 0;
  std::set<const Notifier*> present;
  std::function<void(const Notifier::Ptr&, bool)> handler;

 private:
  Collection* const collection_;
};

class ListTables {
 public:
  ExtComm::PtrConst comm(U64 value) const {
    return ExtComm::dedupContent(values.ptr(), ExtCommContent(value));
  }
  ExtCommList::PtrConst intern(const std::vector<U64>& of) const {
    const ExtCommList::Ptr list = extCommListFactory();
    for (const U64 value : of) list->commIs(comm(value));
    return list->dedup(lists.ptr());
  }
  const Kiv::Ptr<Dorn::DedupHashTable>& rtTable() const {
    return lists->rtExtCommClassificationListDedupTable();
  }
  U32 sizes() const {
    return lists->size() + rtTable()->size() +
           lists->extCommClassificationListDedupTable()->size() + values->size();
  }

  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  ExtCommDedupTable::Ptr values = extCommDedupTableFactory(parser->extCommParser());
  ExtCommListDedupTable::Ptr lists = extCommListDedupTableFactory();
};

RtExtCommClassificationList* routeTargetsOf(const ExtCommList::PtrConst& list) {
  const auto part = list->classificationList(extCommClassificationRouteTarget);
  return const_cast<RtExtCommClassificationList*>(
      static_cast<const RtExtCommClassificationList*>(part.ptr()));
}

U64 objectsAlive() {
  return ExtCommList::kivType().objects() + RtExtCommClassificationList::kivType().objects() +
         ExtCommClassificationList::kivType().objects() + Notifier::kivType().objects() +
         Collection::kivType().objects() + RtExtCommListLifeTimeNotifiee::kivType().objects() +
         ExtCommListDedupTable::kivType().objects();
}

// At the end of each test, all objects must be destroyed.
class ExtCommListDedupTableTest : public testing::Test, public ListTables {
 protected:
  void TearDown() override {
    collection = nullptr;
    notifiee = nullptr;
    lists = nullptr;
    values = nullptr;
    EXPECT_EQ(0U, objectsAlive());
  }

  Collection::Ptr collection = lists->notifyingRtExtCommListCollection();
  RtExtCommListLifeTimeNotifiee::Ptr notifiee = lists->rtExtCommListLifeTimeNotifiee();
};

TEST_F(ExtCommListDedupTableTest, EqualRouteTargetsHaveOneNotifierForAsLongAsTheyAreUsed) {
  SubListObserver observer(collection);
  EXPECT_TRUE(lists->hasNotificationActive());
  auto a = intern({routeTargetA, routeTargetB, colorA});
  auto b = intern({colorB, routeTargetB, routeTargetA, routeTargetA});
  auto noTargets = intern({colorA});
  EXPECT_EQ(routeTargetsOf(a), routeTargetsOf(b));
  EXPECT_EQ(3U, lists->size());
  EXPECT_EQ(1U, rtTable()->size());
  EXPECT_EQ(2U, lists->extCommClassificationListDedupTable()->size());

  ASSERT_EQ(1U, collection->rtExtCommList().size());
  {
    const Notifier::Ptr notifier = *collection->rtExtCommList().begin();
    EXPECT_TRUE(notifier->hasNotificationActive());
    EXPECT_EQ(routeTargetsOf(a), notifier->rtExtCommListRawPtr());
    EXPECT_EQ(notifier, routeTargetsOf(a)->getLifeTimeNotifier());
    EXPECT_TRUE(routeTargetsOf(a)->haveLifeTimeNotifier());
    EXPECT_TRUE(notifier->comm(routeTargetB));
    EXPECT_FALSE(notifier->comm(colorA));
    EXPECT_EQ(routeTargetsOf(a)->toStrep(), notifier->toStrep());
    std::ostringstream text;
    text << notifier.ptr() << ' ' << static_cast<const Notifier*>(nullptr);
    EXPECT_EQ(notifier->toStrep() + " NULL", text.str());
  }
  a = nullptr;
  auto part = b->classificationList(extCommClassificationRouteTarget);
  b = nullptr;
  EXPECT_EQ(1U, collection->rtExtCommList().size()) << "a user holds the sub-list";
  part = nullptr;
  EXPECT_EQ(0U, collection->rtExtCommList().size());
  EXPECT_EQ(1, observer.came);
  EXPECT_EQ(1, observer.went);
  noTargets = nullptr;
  EXPECT_EQ(0U, sizes());
}

TEST_F(ExtCommListDedupTableTest, AKeptNotifierAnswersAfterTheDeparture) {
  auto list = intern({routeTargetA, colorA});
  Notifier::Ptr kept = routeTargetsOf(list)->lifeTimeNotifier();
  const Kiv::String text = kept->toStrep();
  list = nullptr;
  EXPECT_EQ(0U, rtTable()->size());
  EXPECT_FALSE(kept->rtExtCommListRawPtr()->isDeduped());
  EXPECT_FALSE(kept->rtExtCommListRawPtr()->haveLifeTimeNotifier());
  EXPECT_TRUE(kept->comm(routeTargetA));
  EXPECT_EQ(text, kept->toStrep());
  EXPECT_EQ(1U, kept->references());
  EXPECT_EQ(1U, values->size()) << "the members live as long";

  const auto again = intern({routeTargetA, colorA});
  EXPECT_NE(kept, routeTargetsOf(again)->lifeTimeNotifier());
  EXPECT_NE(kept->rtExtCommListRawPtr(), routeTargetsOf(again));
  kept = nullptr;
  EXPECT_EQ(1U, RtExtCommClassificationList::kivType().objects());
  EXPECT_EQ(1U, collection->rtExtCommList().size());
}

// --- Stopping ---

TEST_F(ExtCommListDedupTableTest, HoweverItStopsTheListsStayAndNothingIsListed) {
  const std::vector<std::pair<const char*, std::function<void()>>> stops = {
      {"by null", [&] { rtTable()->lifeTimeNotifieeIs(nullptr); }},
      {"the observer goes",
       [&] {
         lists->rtExtCommListLifeTimeNotifieeDel();
         EXPECT_FALSE(lists->rtExtCommListLifeTimeNotifiee());
         notifiee = nullptr;
       }},
      {"another observer comes",
       [&] {
         notifiee = nullptr;
         const auto other = lists->notifyingRtExtCommListCollectionIs();
         rtTable()->lifeTimeNotifieeIs(lists->rtExtCommListLifeTimeNotifieeIs(other));
         EXPECT_EQ(2U, other->rtExtCommList().size());
         rtTable()->lifeTimeNotifieeDel();
         EXPECT_EQ(0U, other->rtExtCommList().size());
       }},
      {"the collection forgets them, and is asked to again when they go",
       [&] {
         collection->rtExtCommListDelAll();
         EXPECT_EQ(0U, collection->rtExtCommList().size());
         notifiee = nullptr;
         lists->rtExtCommListLifeTimeNotifieeDel();
       }},
      {"the collection is no longer wanted, then the observer",
       [&] {
         lists->notifyingRtExtCommListCollectionDel();
         EXPECT_FALSE(lists->notifyingRtExtCommListCollection());
         EXPECT_EQ(2U, collection->rtExtCommList().size());
         notifiee = nullptr;
         lists->rtExtCommListLifeTimeNotifieeDel();
       }},
  };
  for (const auto& [name, stop] : stops) {
    SCOPED_TRACE(name);
    lists = extCommListDedupTableFactory();
    collection = lists->notifyingRtExtCommListCollection();
    notifiee = lists->rtExtCommListLifeTimeNotifiee();
    SubListObserver observer(collection);
    std::vector<ExtCommList::PtrConst> held = {intern({routeTargetA, colorA}),
                                               intern({routeTargetB, colorA})};
    EXPECT_EQ(2, observer.came);
    stop();
    EXPECT_EQ(2, observer.went);
    EXPECT_EQ(0U, collection->rtExtCommList().size());
    EXPECT_EQ(0U, Notifier::kivType().objects());
    EXPECT_EQ(2U, rtTable()->size());
    for (const auto& list : held) {
      EXPECT_FALSE(routeTargetsOf(list)->lifeTimeNotifier());
      EXPECT_FALSE(routeTargetsOf(list)->haveLifeTimeNotifier());
      EXPECT_TRUE(routeTargetsOf(list)->isDeduped());
    }
    EXPECT_EQ(held[0], intern({colorA, routeTargetA}));
    held.clear();
    EXPECT_EQ(0U, sizes());
    EXPECT_EQ(2, observer.came);
  }
}

TEST_F(ExtCommListDedupTableTest, ATableThatGoesLeavesItsListsAndEmptiesItsCollection) {
  SubListObserver observer(collection);
  const auto list = intern({routeTargetA, colorA});
  const Notifier::Ptr kept = routeTargetsOf(list)->lifeTimeNotifier();
  lists = nullptr;
  EXPECT_EQ(1, observer.went);
  EXPECT_EQ(0U, collection->rtExtCommList().size());
  EXPECT_FALSE(routeTargetsOf(list)->lifeTimeNotifier());
  EXPECT_FALSE(routeTargetsOf(list)->isDeduped());
  EXPECT_TRUE(kept->comm(routeTargetA));
  EXPECT_EQ(2U, values->size());
}

TEST_F(ExtCommListDedupTableTest, AnObserverThatIsRegisteredAgainHearsOfThoseThere) {
  const auto before = intern({routeTargetA});
  rtTable()->lifeTimeNotifieeDel();
  auto between = intern({routeTargetB});
  EXPECT_EQ(0U, collection->rtExtCommList().size());
  SubListObserver observer(collection);
  rtTable()->lifeTimeNotifieeIs(notifiee);
  EXPECT_EQ(2, observer.came);
  EXPECT_EQ(2U, collection->rtExtCommList().size());
  between = nullptr;
  EXPECT_EQ(1, observer.went);
  EXPECT_EQ(1U, rtTable()->size());
}

// --- Observers that interfere ---

// If an observer throws at an insertion, neither the tables nor the collection keep the
// sub-list, even if the observer also throws when the insertion is undone.
TEST_F(ExtCommListDedupTableTest, AnObserverThatThrowsUndoesTheInterning) {
  Notifier::Ptr kept;
  for (const bool alsoUndoing : {false, true}) {
    SubListObserver throwing(collection);
    throwing.handler = [&](const Notifier::Ptr& notifier, bool isThere) {
      kept = notifier;
      if (isThere || alsoUndoing) throw std::runtime_error("refused");
    };
    EXPECT_THROW(intern({routeTargetA, colorA}), std::runtime_error);
    EXPECT_EQ(0U, rtTable()->size());
    EXPECT_EQ(0U, lists->size());
    EXPECT_EQ(0U, collection->rtExtCommList().size());
    EXPECT_EQ(1, throwing.went);
    EXPECT_TRUE(kept->comm(routeTargetA));
    EXPECT_EQ(1U, RtExtCommClassificationList::kivType().objects());
    kept = nullptr;
    EXPECT_EQ(0U, sizes());
  }
  EXPECT_TRUE(routeTargetsOf(intern({routeTargetA}))->isDeduped());
}

// A registration announces the members one by one. If it ends half way, by an exception or
// because observation is stopped, no member keeps a notifier.
TEST_F(ExtCommListDedupTableTest, ARegistrationMayFailOrBeStoppedHalfWay) {
  const std::vector<std::pair<const char*, std::function<void()>>> ends = {
      {"throws", [] { throw std::runtime_error("refused"); }},
      {"stops", [&] { rtTable()->lifeTimeNotifieeDel(); }},
      {"stops and throws",
       [&] {
         rtTable()->lifeTimeNotifieeDel();
         throw std::runtime_error("refused");
       }},
  };
  std::vector<ExtCommList::PtrConst> held;
  for (U64 i = 0; i < 5; ++i) held.push_back(intern({routeTargetA + i}));
  for (const auto& [name, end] : ends) {
    SCOPED_TRACE(name);
    rtTable()->lifeTimeNotifieeDel();
    SubListObserver observer(collection);
    observer.handler = [&observer, &end = end](const Notifier::Ptr&, bool isThere) {
      if (isThere && observer.came == 3) end();
    };
    try {
      rtTable()->lifeTimeNotifieeIs(notifiee);
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(3, observer.came);
    EXPECT_EQ(3, observer.went);
    EXPECT_EQ(5U, rtTable()->size());
    EXPECT_EQ(0U, Notifier::kivType().objects());
  }
  rtTable()->lifeTimeNotifieeIs(notifiee);
  EXPECT_EQ(5U, collection->rtExtCommList().size());
}

TEST_F(ExtCommListDedupTableTest, ARegistrationMayBeBegunAnewHalfWay) {
  std::vector<ExtCommList::PtrConst> held;
  for (U64 i = 0; i < 5; ++i) held.push_back(intern({routeTargetA + i}));
  rtTable()->lifeTimeNotifieeDel();
  SubListObserver observer(collection);
  observer.handler = [&](const Notifier::Ptr&, bool isThere) {
    if (isThere && observer.came == 2) rtTable()->lifeTimeNotifieeIs(notifiee);
  };
  rtTable()->lifeTimeNotifieeIs(notifiee);
  EXPECT_EQ(7, observer.came);
  EXPECT_EQ(2, observer.went);
  EXPECT_EQ(5U, collection->rtExtCommList().size());
}

TEST_F(ExtCommListDedupTableTest, AnObserverMayStopEverythingWhenItHears) {
  for (const bool whenItGoes : {false, true}) {
    SubListObserver observer(collection);
    observer.handler = [&](const Notifier::Ptr&, bool isThere) {
      if (isThere == whenItGoes) return;
      notifiee = nullptr;
      lists->rtExtCommListLifeTimeNotifieeDel();
    };
    auto list = intern({routeTargetA});
    list = nullptr;
    EXPECT_EQ(0U, sizes());
    EXPECT_EQ(1, observer.went);
    EXPECT_EQ(0U, RtExtCommListLifeTimeNotifiee::kivType().objects());
    notifiee = lists->rtExtCommListLifeTimeNotifieeIs(collection);
    rtTable()->lifeTimeNotifieeIs(notifiee);
  }
}

TEST_F(ExtCommListDedupTableTest, AnObserverMayBringRouteTargetsBack) {
  SubListObserver observer(collection);
  std::vector<ExtCommList::PtrConst> kept;
  observer.handler = [&](const Notifier::Ptr& gone, bool isThere) {
    if (isThere || !kept.empty()) return;
    EXPECT_EQ(0U, rtTable()->size());
    EXPECT_TRUE(gone->comm(routeTargetA));
    kept.push_back(intern({routeTargetA, colorB}));
    EXPECT_NE(gone->rtExtCommListRawPtr(), routeTargetsOf(kept[0]));
  };
  intern({routeTargetA, colorA});
  ASSERT_EQ(1U, kept.size());
  EXPECT_TRUE(routeTargetsOf(kept[0])->isDeduped());
  EXPECT_TRUE(collection->rtExtCommListHas(routeTargetsOf(kept[0])->lifeTimeNotifier()));
  EXPECT_EQ(1U, collection->rtExtCommList().size());
  EXPECT_EQ(2, observer.came);
  kept.clear();
  EXPECT_EQ(0U, sizes());
}

TEST_F(ExtCommListDedupTableTest, AnObserverMayInternAndReleaseOthersAndMembers) {
  SubListObserver observer(collection);
  std::vector<ExtCommList::PtrConst> keptLists;
  std::vector<ExtComm::PtrConst> keptValues;
  observer.handler = [&](const Notifier::Ptr& notifier, bool isThere) {
    if (notifier->comm(routeTargetB)) return;
    if (isThere) {
      keptLists = {intern({routeTargetB, colorB}), intern({colorB})};
      keptValues = {comm(routeTargetA), comm(routeTargetA + 9)};
    } else {
      keptLists.clear();
      keptValues.clear();
    }
  };
  auto list = intern({routeTargetA, colorA});
  EXPECT_EQ(2U, collection->rtExtCommList().size());
  EXPECT_EQ(3U, lists->size());
  list = nullptr;
  EXPECT_EQ(0U, sizes());
  EXPECT_TRUE(observer.present.empty());
}

using ExtCommListDedupTableDeathTest = ExtCommListDedupTableTest;

TEST_F(ExtCommListDedupTableDeathTest, SubListsMustAgreeWithTheirAnnouncements) {
  const auto list = intern({routeTargetA});
  const Dorn::DedupHandle::Ptr handle(routeTargetsOf(list));
  EXPECT_DEATH(notifiee->handleInsert(handle), "__null == rtExtCommList->lifeTimeNotifier\\(\\)");
  rtTable()->lifeTimeNotifieeDel();
  EXPECT_DEATH(notifiee->handleRemove(handle.ptr()), "__null != lifeTimeNotifier");
}

TEST_F(ExtCommListDedupTableTest, TracesAtLevelNine) {
  std::vector<Kiv::String> lines;
  Kiv::traceSinkIs([&lines](std::string_view line) { lines.emplace_back(line); });
  Kiv::traceLevelsIs("OvBgp/9");
  auto list = intern({routeTargetA});
  std::ostringstream handle;
  handle << " handle: " << static_cast<const Dorn::DedupHandle*>(routeTargetsOf(list));
  const Kiv::String both =
      handle.str() + " rtExtCommListLifeTimeNotifier: " + routeTargetsOf(list)->toStrep();
  std::ostringstream table;
  table << "handleNotificationStop dedupTable: " << rtTable().ptr();
  list = nullptr;
  rtTable()->lifeTimeNotifieeDel();
  Kiv::traceLevelsIs("OvBgp/0-8");
  list = intern({routeTargetB});
  Kiv::traceLevelsIs("");
  Kiv::traceSinkIs(nullptr);
  ASSERT_EQ(3U, lines.size());
  EXPECT_NE(Kiv::String::npos, lines[0].find("handleInsert" + both)) << lines[0];
  EXPECT_NE(Kiv::String::npos, lines[1].find("handleRemove" + both)) << lines[1];
  EXPECT_NE(Kiv::String::npos, lines[2].find(table.str())) << lines[2];
}

// --- Dumps ---

template <class Object>
Kiv::String dumpOf(const Object& object, unsigned int indent) {
  std::ostringstream out;
  object->dumpState(Dorn::dumpContextFactory(out), indent);
  return out.str();
}

constexpr unsigned int atTheMargin = 0xFFFFFFFE;

TEST_F(ExtCommListDedupTableTest, DumpsShowEveryTableUnderItsLabel) {
  const auto list = intern({routeTargetA, colorA, 0x0602'0000'0000'0000});
  const auto expected = [](const Kiv::String& outer, const Kiv::String& inner) {
    const auto table = [&inner](const Kiv::String& label, const char* size) {
      return inner + label + "\n" + inner + "  DedupHashTable members #" + size + ";\n";
    };
    return outer + "ExtCommListDedupTable\n" + table("extComm", "1") +
           table("extCommClassification", "2") + table("rtExtCommClassification", "1");
  };
  EXPECT_EQ(expected("", "  "), dumpOf(lists, 0));
  EXPECT_EQ(expected("  ", "    "), dumpOf(lists, 2));
  EXPECT_EQ(expected("  ", ""), dumpOf(lists, atTheMargin));

  // dumpState is virtual: a pointer to the base prints the same.
  const CommListDedupTableBase::Ptr base = lists;
  EXPECT_EQ(expected("", "  "), dumpOf(base, 0));
}

TEST_F(ExtCommListDedupTableTest, TheCollectionsDumpShowsEachText) {
  const Kiv::String name = "NotifyingRtExtCommListCollection rtExtCommLists ";
  EXPECT_EQ(name + "#0;\n", dumpOf(collection, 0));
  const auto list = intern({routeTargetA, routeTargetB});
  const Kiv::String entry = "rtExtCommList " + routeTargetsOf(list)->toStrep() + "\n";
  EXPECT_EQ(name + "#1;\n  " + entry, dumpOf(collection, 0));
  EXPECT_EQ("  " + name + "#1;\n    " + entry, dumpOf(collection, 2));
  EXPECT_EQ("  " + name + "#1;\n" + entry, dumpOf(collection, atTheMargin));
}

TEST(CommListDedupTables, DumpsOfTheOthers) {
  const auto ip6 = extCommIp6ListDedupTableFactory();
  EXPECT_TRUE(ip6->hasNotificationActive());
  const Kiv::String empty = "DedupHashTable members #0;\n";
  EXPECT_EQ(
      "ExtCommListDedupTable\n  extComm\n    " + empty + "  extCommClassification\n    " + empty,
      dumpOf(ip6, 0));
  for (const CommListDedupTableBase::Ptr& flat :
       {CommListDedupTableBase::Ptr(commListDedupTableFactory()),
        CommListDedupTableBase::Ptr(largeCommListDedupTableFactory())}) {
    EXPECT_EQ("DedupTable  " + empty, dumpOf(flat, 0));
    EXPECT_EQ("  DedupTable    " + empty, dumpOf(flat, 2));
    EXPECT_EQ("  DedupTable" + empty, dumpOf(flat, atTheMargin));
  }
}

}  // namespace
}  // namespace Routing::Bgp
