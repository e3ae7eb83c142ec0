// Snapshots of every kind of list.
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "tests/AllKinds.h"

namespace Routing::Bgp {
namespace {

using ValueTables = AllKinds::Tables;
using Numbers = std::vector<U16>;

template <class List, class Table, class Make>
typename List::PtrConst interned(const typename List::Ptr& list, const Table& table,
                                 const Numbers& numbers, const Make& make) {
  for (const U16 number : numbers) list->commIs(make(number));
  return list->dedup(table.ptr());
}

// Standard communities. A kind says how a list is made of communities with given numbers, and
// which key and value a number has. Keys ascend with the numbers, which begin at 1.
struct StandardSnapshot {
  using Snapshot = CommListSnapshot;
  static U32 key(U16 number) { return number * 0x10001U; }
  static bool value(const ValueTables&, U16) { return true; }
  static bool otherValue(const ValueTables&) { return false; }
  static auto list(const ValueTables& tables, const Numbers& numbers) {
    return interned<CommList>(commListFactory(), tables.commLists, numbers, key);
  }
};

// Large communities.
struct LargeSnapshot {
  using Snapshot = RouteMap::CommListSnapshot;
  static Acl::CommunityValue key(U16 number) { return {65000, number, 0xFFFFU - number}; }
  static bool value(const ValueTables&, U16) { return true; }
  static bool otherValue(const ValueTables&) { return false; }
  static auto list(const ValueTables& tables, const Numbers& numbers) {
    return interned<LargeCommList>(largeCommListFactory(), tables.largeCommLists, numbers, key);
  }
};

// Extended communities. All are route targets, so that a list has one sub-list.
struct Extended {
  using Snapshot = ExtCommListSnapshot;
  static U64 key(U16 number) { return 0x0002'fde8'0000'0000 + number; }
  static ExtComm::PtrConst value(const ValueTables& tables, U16 number) {
    return ExtComm::dedupContent(tables.values.ptr(), ExtCommContent(key(number)));
  }
  static ExtComm::PtrConst otherValue(const ValueTables& tables) { return value(tables, 999); }
  static ExtCommList::PtrConst list(const ValueTables& tables, const Numbers& numbers) {
    return interned<ExtCommList>(extCommListFactory(), tables.extCommLists, numbers,
                                 [&](U16 number) { return value(tables, number); });
  }
};

struct Ip6Extended {
  using Snapshot = ExtCommIp6ListSnapshot;
  static ExtCommIp6Content key(U16 number) {
    return ExtCommIp6Content(0, 2, Ovnet::Ip6Addr(std::string_view("2001:db8::1")), number);
  }
  static ExtCommIp6::PtrConst value(const ValueTables& tables, U16 number) {
    return ExtCommIp6::dedupContent(tables.ip6Values.ptr(), key(number));
  }
  static ExtCommIp6::PtrConst otherValue(const ValueTables& tables) { return value(tables, 999); }
  static ExtCommIp6List::PtrConst list(const ValueTables& tables, const Numbers& numbers) {
    return interned<ExtCommIp6List>(extCommIp6ListFactory(), tables.ip6Lists, numbers,
                                    [&](U16 number) { return value(tables, number); });
  }
};

// The only sub-list of a list of kind `Whole`. An empty list has none, so an empty sub-list is
// made.
template <class Whole, class Of, auto factory>
struct Part : Whole {
  using Snapshot = Of;
  static auto list(const ValueTables& tables, const Numbers& numbers) {
    const auto whole = Whole::list(tables, numbers);
    using List = Kiv::Ptr<const typename decltype(factory({}))::element_type>;
    for (const auto& part : whole->classificationListVector()) {
      if (part) return List(part);
    }
    return List(factory(extCommClassificationColor));
  }
};
using ExtendedPart =
    Part<Extended, ExtCommClassificationListSnapshot, extCommClassificationListFactory>;
using Ip6ExtendedPart =
    Part<Ip6Extended, ExtCommIp6ClassificationListSnapshot, extCommIp6ClassificationListFactory>;

template <class Kind>
class SnapshotTest : public testing::Test {
 protected:
  using Snapshot = typename Kind::Snapshot;
  using Key = typename Snapshot::CommKey;

  std::vector<Key> keys(const Snapshot& snapshot) const {
    std::vector<Key> all;
    for (const auto& member : snapshot.comm()) all.push_back(member.key());
    return all;
  }

  const ValueTables tables_{};
};

// An observer that records attribute and key of each change.
template <class Key>
class SnapshotObserver : public Kiv::Notifiee {
 public:
  explicit SnapshotObserver(Kiv::NotifieeList* list) { notifierIs(list); }
  void handleChange(const Kiv::Change& change) override {
    heard.emplace_back(change.attribute(), change.key<Key>());
  }
  std::vector<std::pair<U32, Key>> heard;
};

using SnapshotKinds = testing::Types<StandardSnapshot, LargeSnapshot, ExtendedPart, Extended,
                                     Ip6ExtendedPart, Ip6Extended>;
TYPED_TEST_SUITE(SnapshotTest, SnapshotKinds, );

TYPED_TEST(SnapshotTest, HoldsTheListsMembersInOrder) {
  const auto list = TypeParam::list(this->tables_, {3, 1, 2, 3});
  const auto snapshot = list->commSnapshot();
  EXPECT_TRUE(snapshot->hasNotificationActive());
  EXPECT_EQ((std::vector{TypeParam::key(1), TypeParam::key(2), TypeParam::key(3)}),
            this->keys(*snapshot));
  U16 number = 0;
  for (const auto& member : snapshot->comm()) {
    EXPECT_EQ(TypeParam::value(this->tables_, ++number), member.value());
  }
  EXPECT_TRUE(TypeParam::list(this->tables_, {})->commSnapshot()->comm().empty());
}

TYPED_TEST(SnapshotTest, IsEditedAndWatchedApartFromTheList) {
  const auto key = [](U16 number) { return TypeParam::key(number); };
  const auto list = TypeParam::list(this->tables_, {1, 2, 3});
  const auto snapshot = list->commSnapshot();
  SnapshotObserver<typename TestFixture::Key> observer(snapshot->notifieeList());
  snapshot->commIs(key(5), TypeParam::value(this->tables_, 5));
  snapshot->commIs(key(1), TypeParam::value(this->tables_, 1));
  snapshot->commIs(key(1), TypeParam::otherValue(this->tables_));
  EXPECT_EQ(TypeParam::otherValue(this->tables_), snapshot->comm().begin()->value());
  EXPECT_TRUE(snapshot->commDel(key(2)));
  EXPECT_FALSE(snapshot->commDel(key(2)));
  EXPECT_TRUE(snapshot->commDel(snapshot->comm().find(key(3))));
  EXPECT_TRUE(snapshot->commHas(key(5)));
  EXPECT_EQ((std::vector{key(1), key(5)}), this->keys(*snapshot));
  snapshot->commDelAll();
  EXPECT_TRUE(snapshot->comm().empty());
  std::vector<typename TestFixture::Key> heard;
  for (const auto& [attribute, changed] : observer.heard) {
    EXPECT_EQ(TestFixture::Snapshot::commAttribute, attribute);
    heard.push_back(changed);
  }
  EXPECT_EQ((std::vector{key(5), key(1), key(2), key(3), key(1), key(5)}), heard);
  EXPECT_EQ(list, TypeParam::list(this->tables_, {1, 2, 3}));
  EXPECT_EQ(3U, list->commSnapshot()->comm().size());
}

// --- Extended lists ---

template <class Kind>
class ExtSnapshotTest : public SnapshotTest<Kind> {
 protected:
  static U32 membersInterned(const ValueTables& tables) {
    return tables.values->size() + tables.ip6Values->size();
  }
};
using ExtKinds = testing::Types<ExtendedPart, Extended, Ip6ExtendedPart, Ip6Extended>;
TYPED_TEST_SUITE(ExtSnapshotTest, ExtKinds, );

TYPED_TEST(ExtSnapshotTest, KeepsItsMembersInterned) {
  const auto snapshot = TypeParam::list(this->tables_, {1, 2})->commSnapshot();
  EXPECT_EQ(2U, this->membersInterned(this->tables_));
  EXPECT_EQ(TypeParam::value(this->tables_, 1), snapshot->comm().begin()->value());
  const auto kept = snapshot->comm().begin();
  snapshot->commDelAll();
  if constexpr (requires { snapshot->classificationListDelAll(); }) {
    EXPECT_EQ(2U, this->membersInterned(this->tables_)) << "those of the sub-list";
    snapshot->classificationListDelAll();
  }
  EXPECT_EQ(1U, this->membersInterned(this->tables_)) << "that of the entry that is kept";
  snapshot->commIs(TypeParam::value(this->tables_, 7));
  EXPECT_EQ(std::vector{TypeParam::key(7)}, this->keys(*snapshot));
}

template <class Kind>
class ListSnapshotTest : public SnapshotTest<Kind> {
 protected:
  static U32 partsInterned(const ValueTables& tables) {
    return tables.extCommLists->rtExtCommClassificationListDedupTable()->size() +
           tables.extCommLists->extCommClassificationListDedupTable()->size() +
           tables.ip6Lists->extCommClassificationListDedupTable()->size();
  }
};
using ListKinds = testing::Types<Extended, Ip6Extended>;
TYPED_TEST_SUITE(ListSnapshotTest, ListKinds, );

TYPED_TEST(ListSnapshotTest, HasTheSubListsAsACollectionOfTheirOwn) {
  auto list = TypeParam::list(this->tables_, {1, 2});
  const auto snapshot = list->commSnapshot();
  ASSERT_EQ(1U, snapshot->classificationList().size());
  const auto part = snapshot->classificationList().begin()->value();
  const ExtCommClassification classification = part->classification();
  EXPECT_EQ(list->classificationList(classification), part);
  list = nullptr;
  EXPECT_TRUE(part->isDeduped());
  EXPECT_EQ(1U, this->partsInterned(this->tables_));

  SnapshotObserver<ExtCommClassification> observer(snapshot->notifieeList());
  EXPECT_TRUE(snapshot->classificationListDel(classification));
  EXPECT_EQ(2U, snapshot->comm().size());
  snapshot->classificationListIs(part);
  snapshot->classificationListIs(part);
  EXPECT_TRUE(snapshot->classificationListHas(classification));
  EXPECT_TRUE(snapshot->classificationListDel(snapshot->classificationList().begin()));
  snapshot->classificationListIs(extCommClassificationColor, part);
  snapshot->classificationListDelAll();
  EXPECT_TRUE(snapshot->classificationList().empty());
  constexpr U32 attribute = TypeParam::Snapshot::classificationListAttribute;
  EXPECT_EQ(
      (std::vector<std::pair<U32, ExtCommClassification>>{{attribute, classification},
                                                          {attribute, classification},
                                                          {attribute, classification},
                                                          {attribute, extCommClassificationColor},
                                                          {attribute, extCommClassificationColor}}),
      observer.heard);
}

TEST(ExtCommSnapshots, NameTheirClassificationAndSubLists) {
  const ValueTables tables{};
  const ExtCommList::Ptr building = extCommListFactory();
  for (const U64 value : std::initializer_list<U64>{0x0002'fde8'0000'0064, 0x030b'0000'0000'0001,
                                                    0x0003'fde8'0000'0064}) {
    building->commIs(ExtComm::dedupContent(tables.values.ptr(), ExtCommContent(value)));
  }
  EXPECT_EQ(3U, building->commSnapshot()->comm().size());
  EXPECT_TRUE(building->commSnapshot()->classificationList().empty());
  const auto snapshot = building->dedup(tables.extCommLists.ptr())->snapshot();
  std::vector<ExtCommClassification> classifications;
  for (const auto& member : snapshot->classificationList()) {
    classifications.push_back(member.key());
    const auto part = member.value()->commSnapshot();
    EXPECT_EQ(member.key(), part->classification());
    EXPECT_EQ(1U, part->comm().size());
  }
  EXPECT_EQ((std::vector{extCommClassificationRouteTarget, extCommClassificationRouteOrigin,
                         extCommClassificationColor}),
            classifications);
  EXPECT_EQ(
      extCommClassificationColor,
      extCommIp6ClassificationListSnapshotFactory(extCommClassificationColor)->classification());
}

// Members and sub-lists of the maps are never null.
template <class Snapshot, class Value>
void expectNoNull(const Kiv::Ptr<Snapshot>& snapshot, typename Snapshot::CommKey key) {
  const Kiv::Ptr<const Value> none;
  EXPECT_DEATH(snapshot->commIs(none), "__null != comm");
  EXPECT_DEATH(snapshot->commIs(key, none), "__null != comm");
  if constexpr (requires { snapshot->classificationList(); }) {
    const typename Snapshot::ClassificationListPtr noList;
    EXPECT_DEATH(snapshot->classificationListIs(noList), "__null != classificationList");
    EXPECT_DEATH(snapshot->classificationListIs(extCommClassificationColor, noList),
                 "__null != classificationList");
  }
}

TEST(ExtCommSnapshotsDeathTest, HaveNoNull) {
  constexpr auto color = extCommClassificationColor;
  expectNoNull<ExtCommListSnapshot, ExtComm>(extCommListSnapshotFactory(), 1);
  expectNoNull<ExtCommClassificationListSnapshot, ExtComm>(
      extCommClassificationListSnapshotFactory(color), 1);
  expectNoNull<ExtCommIp6ListSnapshot, ExtCommIp6>(extCommIp6ListSnapshotFactory(), {});
  expectNoNull<ExtCommIp6ClassificationListSnapshot, ExtCommIp6>(
      extCommIp6ClassificationListSnapshotFactory(color), {});
}

}  // namespace
}  // namespace Routing::Bgp
