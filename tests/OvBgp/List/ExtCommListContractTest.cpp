// The properties of both kinds of extended community lists.
#include <algorithm>
#include <cstdint>
#include <random>
#include <sstream>
#include <type_traits>
#include <vector>

#include "Kiv/Exception.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"
#include "OvFmt/DynamicBuffer.h"
#include "tests/OvBgp/List/ExtCommListKit.h"

namespace Routing::Bgp {
namespace {

template <class Kind>
using ExtCommListContract = ExtCommListFixture<Kind>;
using Kinds = testing::Types<ExtCommKind, ExtCommIp6Kind>;
TYPED_TEST_SUITE(ExtCommListContract, Kinds);

// The one-at-a-time hash of the objects' addresses, written independently of the library.
template <class Objects>
U32 identityHash(const Objects& objects) {
  U32 h = 0;
  for (const auto& object : objects) {
    if (!object) continue;
    auto address = reinterpret_cast<std::uintptr_t>(object.ptr());
    for (int i = 0; i < 4; ++i, address /= 256) {
      h += static_cast<U32>(address % 256);
      h *= 1025;
      h ^= h / 64;
    }
  }
  h *= 9;
  h ^= h / 2048;
  return h * 32769;
}

TYPED_TEST(ExtCommListContract, EqualListsAreOneWhateverOrderAndRepeats) {
  auto list = this->intern({5, 0, 9, 4, 0, 5, 3});
  EXPECT_TRUE(list->isDeduped());
  EXPECT_TRUE(list->hasNotificationActive());
  EXPECT_EQ(5U, list->totalCommunities());
  EXPECT_EQ(4U, list->totalTransitiveCommunities());
  EXPECT_EQ(5U, list->commVector().capacity());
  EXPECT_TRUE(std::ranges::is_sorted(this->contentsIn(*list)));
  EXPECT_EQ(list, this->intern({0, 3, 4, 5, 9}));
  EXPECT_EQ(list, this->internWire(this->wire({9, 9, 5, 3, 0, 4})));
  EXPECT_EQ(list, TypeParam::Family::List::dedupComms(this->table_.ptr(),
                                                      this->valuesOf({3, 3, 9, 5, 4, 0})));
  EXPECT_NE(list, this->intern({0, 3, 4, 5}));
  EXPECT_EQ(1U, this->table_->size());
  EXPECT_EQ(2U, list->references());
  list = nullptr;
  this->expectNothingInterned();
}

TYPED_TEST(ExtCommListContract, PartsGroupByClassificationAndHoldNothingToSpare) {
  const auto list = this->intern({8, 4, 0, 1, 2, 6});
  const auto& parts = list->classificationListVector();
  EXPECT_EQ(static_cast<U32>(extCommClassificationColor) + 1, parts.size());
  EXPECT_EQ(10U, parts.capacity());
  const struct {
    ExtCommClassification classification;
    std::vector<U32> members;
  } rows[] = {
      {extCommClassificationUnSpecified, {}},  {extCommClassificationRouteTarget, {0, 4, 8}},
      {extCommClassificationRouteOrigin, {1}}, {extCommClassificationLinkBandwidth, {}},
      {extCommClassificationColor, {2, 6}},    {extCommClassificationOriginValidationState, {}},
      {extCommClassificationOneBeyondLast, {}}};
  for (const auto& row : rows) {
    const auto part = list->classificationList(row.classification);
    ASSERT_EQ(!row.members.empty(), static_cast<bool>(part)) << row.members.size();
    if (!part) continue;
    EXPECT_EQ(row.classification, part->classification());
    EXPECT_TRUE(part->isDeduped());
    EXPECT_TRUE(part->hasNotificationActive());
    EXPECT_EQ(part->commVector().size(), part->commVector().capacity());
    const auto expected = this->contentsOf(row.members);
    EXPECT_EQ(std::vector(expected.begin(), expected.end()), this->contentsIn(*part));
  }
}

TYPED_TEST(ExtCommListContract, ListsShareTheirEqualParts) {
  const auto red = this->intern({0, 4, 2});
  const auto blue = this->intern({4, 0, 6});
  EXPECT_EQ(red->classificationList(extCommClassificationRouteTarget),
            blue->classificationList(extCommClassificationRouteTarget));
  EXPECT_NE(red->classificationList(extCommClassificationColor),
            blue->classificationList(extCommClassificationColor));
  EXPECT_EQ(3U, TypeParam::partsInterned(*this->table_));
  EXPECT_EQ(2U, this->table_->size());
}

// Lists of random members are compared with std::set. Each is interned from an attribute, from
// values and by commIs. Some lists are kept for a while, so that the table's size is known.
TYPED_TEST(ExtCommListContract, RandomListsMatchASet) {
  using OneList = typename TypeParam::Family::List;
  std::mt19937 random(7);
  std::vector<std::pair<Kiv::Ptr<const OneList>, std::set<U32>>> held(8);
  const auto everyValue = this->valuesOf([] {
    std::vector<U32> all(200);
    for (U32 i = 0; i < all.size(); ++i) all[i] = i;
    return all;
  }());
  for (int round = 0; round < 400; ++round) {
    std::vector<U32> numbers(random() % (round % 20 == 0 ? 150 : 12));
    const U32 range = round % 2 == 0 ? 8 : 200;
    for (U32& n : numbers) n = static_cast<U32>(random()) % range;
    const std::set<U32> model(numbers.begin(), numbers.end());
    const auto fromWire = this->internWire(this->wire(numbers));
    std::shuffle(numbers.begin(), numbers.end(), random);
    const auto byHand = this->intern(numbers);
    ASSERT_EQ(fromWire, byHand);
    ASSERT_EQ(fromWire, OneList::dedupComms(this->table_.ptr(), this->valuesOf(numbers)));
    const auto contents = this->contentsOf(numbers);
    ASSERT_EQ(std::vector(contents.begin(), contents.end()), this->contentsIn(*byHand));
    for (U32 n = 0; n < range; ++n) {
      const auto found = TypeParam::lookup(*byHand, TypeParam::content(n));
      ASSERT_EQ(model.contains(n), static_cast<bool>(found));
      ASSERT_TRUE(!found || found == this->value(n));
    }
    held[random() % held.size()] = {byHand, model};
    std::set<std::set<U32>> models;
    for (const auto& [list, members] : held) {
      if (list) models.insert(members);
    }
    models.insert(model);
    ASSERT_EQ(models.size(), this->table_->size());
  }
}

TYPED_TEST(ExtCommListContract, EmptyListsAreOrdinary) {
  const auto list = this->intern({});
  EXPECT_EQ(list, this->internWire(""));
  EXPECT_EQ(list, TypeParam::Family::List::dedupComms(this->table_.ptr(), {}));
  EXPECT_TRUE(list->empty());
  EXPECT_EQ(0U, list->hash());
  EXPECT_EQ("[  ]", list->toStrep());
  EXPECT_EQ("", TypeParam::serialize(*list, true));
  EXPECT_EQ(nullptr, list->classificationList(extCommClassificationUnSpecified));
}

TYPED_TEST(ExtCommListContract, HashIsThatOfTheAddresses) {
  const auto list = this->intern({0, 2, 4, 7});
  EXPECT_EQ(identityHash(list->classificationListVector()), list->hash());
  const auto part = list->classificationList(extCommClassificationRouteTarget);
  EXPECT_EQ(identityHash(part->commVector()), part->hash());
  // A lookup by the members finds the list if and only if the hash is the list's own.
  using Comm = typename TypeParam::Family::Value;
  std::vector<const Comm*> members;
  for (const auto& comm : list->commVector()) members.push_back(comm.ptr());
  const ExtCommListContent<Comm> key(members);
  const auto& table = *this->table_->dedupTable();
  EXPECT_EQ(list.ptr(), table.lookupByContent(key, list->hash()).ptr());
  EXPECT_EQ(nullptr, table.lookupByContent(key, list->hash() + 1));
  // Only sub-lists of eight-octet communities must be sorted.
  using Part = typename TypeParam::Family::ClassificationList;
  const typename Part::Ptr unsorted(new Part(extCommClassificationRouteOrigin));
  for (const U32 number : {5U, 1U}) {
    if constexpr (std::is_same_v<Part, ExtCommClassificationList>) {
      EXPECT_DEATH((void)unsorted->hash(),
                   "commVectorSorted\\(\\)\" failed in "
                   "OvBgp/OvBgpCommunityList:.*::hash\\(\\) const");
    } else {
      EXPECT_EQ(identityHash(unsorted->commVector()), unsorted->hash());
    }
    unsorted->commIs(this->value(number));
  }
}

// A table finds an interned list by its members, so these must stay. Sub-lists that are never
// interned may grow.
TYPED_TEST(ExtCommListContract, InternedListsDoNotChange) {
  using OneList = typename TypeParam::Family::List;
  using Part = typename TypeParam::Family::ClassificationList;
  const auto other = this->intern({1, 4});
  const auto interned = this->build({1, 0});
  EXPECT_EQ(interned, interned->dedup(this->table_.ptr()));
  const auto received = this->internWire(this->wire({0, 1, 2}));
  const auto left = this->build({8});
  EXPECT_EQ(left, left->dedup(TypeParam::listTable().ptr())) << "that table is destroyed now";
  const auto before = this->contentsIn(*interned);
  interned->sortComms();
  EXPECT_EQ(before, this->contentsIn(*interned));
  const auto changed =
      "dedupState\\(\\) == Dorn::dedupHandleStateNeverDeduped\\(\\) .*"
      "OvBgp/OvBgpCommunityList:";
  for (OneList* const list : {interned.ptr(), const_cast<OneList*>(received.ptr()), left.ptr()}) {
    EXPECT_DEATH(list->commIs(this->value(2)), changed);
    EXPECT_DEATH(list->append(other), changed);
    EXPECT_DEATH(
        list->appendClassificationList(other->classificationList(extCommClassificationRouteTarget)),
        changed);
    EXPECT_DEATH(list->expectedCommunityCountIs(9), changed);
  }
  const auto part = interned->classificationList(extCommClassificationRouteTarget);
  EXPECT_DEATH(const_cast<Part&>(*part).commIs(this->value(4)), changed);
  const auto grouped = this->build({0});
  grouped->createClassificationListVector(false);
  const auto free = grouped->classificationListVector()[1];
  const_cast<Part&>(*free).commIs(this->value(4));
  EXPECT_EQ(2U, free->commVector().size());
}

TYPED_TEST(ExtCommListContract, WireValueOfOddLengthIsRefused) {
  const std::size_t size = TypeParam::Family::wireSize;
  for (const std::size_t length : {std::size_t{1}, size - 1, size + 1, 33 * size + 4}) {
    try {
      this->internWire(Kiv::String(length, 'x'));
      ADD_FAILURE() << length;
    } catch (const Kiv::RangeException& error) {
      const Kiv::String text = error.what();
      EXPECT_NE(Kiv::String::npos, text.find(TypeParam::Family::attributeName)) << text;
      EXPECT_NE(Kiv::String::npos, text.find(std::to_string(length))) << text;
    }
  }
}

TYPED_TEST(ExtCommListContract, AppendsOthersAndItself) {
  const auto other = this->intern({0, 1});
  const auto list = this->build({9});
  list->sortComms();
  list->append(other);
  list->append(nullptr);
  list->appendClassificationList(other->classificationList(extCommClassificationRouteTarget));
  list->appendClassificationList(nullptr);
  EXPECT_EQ(4U, list->commVector().size());
  list->append(list);
  EXPECT_EQ(8U, list->commVector().size());
  EXPECT_EQ(this->intern({0, 1, 9}), list->dedup(this->table_.ptr()));
}

TYPED_TEST(ExtCommListContract, GroupingForNoTableGivesPartsThatAreNeverInterned) {
  const auto list = this->build({4, 0, 2});
  list->createClassificationListVector(false);
  list->createClassificationListVector(false);
  EXPECT_EQ(0U, list->totalTransitiveCommunities());
  const auto& part = list->classificationListVector()[1];
  EXPECT_EQ(Dorn::DedupHandleState::rebuilt, part->dedupState());
  EXPECT_EQ(4U, part->commVector().size());
  EXPECT_EQ(0U, TypeParam::partsInterned(*this->table_));
}

TYPED_TEST(ExtCommListContract, PartsAreInternedOnTheirOwn) {
  const auto list = this->intern({5, 1});
  const typename TypeParam::Family::ClassificationList::Ptr part(
      new typename TypeParam::Family::ClassificationList(extCommClassificationRouteOrigin));
  for (const U32 number : {5U, 1U, 5U}) part->commIs(this->value(number));
  EXPECT_FALSE(part->commVectorSorted());
  EXPECT_EQ(list->classificationList(extCommClassificationRouteOrigin),
            part->dedup(this->table_.ptr()));
  EXPECT_TRUE(part->commVectorSorted());
  EXPECT_EQ(2U, part->commVector().size());
}

TYPED_TEST(ExtCommListContract, TextsAreTheMembersOwn) {
  const auto list = this->intern({2, 1});
  const auto first = list->commVector()[0]->toStrep();
  const auto second = list->commVector()[1]->toStrep();
  std::ostringstream out;
  out.width(60);
  out << list.ptr() << *list << static_cast<decltype(list.ptr())>(nullptr);
  const Kiv::String text = "[ " + first + " " + second + " ]";
  EXPECT_EQ(text + text + "NULL", out.str());
  EXPECT_EQ(text, list->toStrep());

  const auto part = list->classificationList(extCommClassificationColor);
  std::ostringstream partOut;
  partOut.width(60);
  partOut << part.ptr() << static_cast<decltype(part.ptr())>(nullptr);
  EXPECT_EQ("extCommClassificationColor : " + this->value(2)->toStrep(), partOut.str());
  EXPECT_EQ(partOut.str(), part->toStrep());
}

// Classes of a user. Each calls the function of its base, so that their combinations show which
// functions take part in a text.
template <class Base>
class Asked : public Base {
 public:
  using Base::Base;
  Kiv::String toStrepForPolicy(typename Base::StrepFormat format) const override {
    return "asked " + std::to_string(format.bits()) + Base::toStrepForPolicy(format);
  }
};
template <class Base>
class Appended : public Base {
 public:
  using Base::Base;
  void appendForPolicy(OvFmt::DynamicBufferInterface& to,
                       typename Base::StrepFormat format) const override {
    to.append("appended ");
    Base::appendForPolicy(to, format);
  }
};
// Gives all classes the constructor of two arguments.
template <class Base>
class TwoOctets : public Base {
 public:
  template <class Content>
  TwoOctets(ExtCommClassification classification, const Content& content)
      : Base(classification, content, false) {}
  bool policyMatchStrepUI() const override { return true; }
};

// Whatever a class overrides, lists write and match what its toStrepForPolicy returns.
TYPED_TEST(ExtCommListContract, PolicyTextIsTheMembersOwn) {
  using Plain = typename TypeParam::Family::Value;
  using Subtyped = typename TypeParam::Subtyped;
  using Format = typename Plain::StrepFormat;
  const auto check = [this]<class T>(std::type_identity<T>) {
    const auto member = Kiv::staticPtrCast<const Plain>(this->values_->dedup(
        Kiv::Ptr<T>(new T(extCommClassificationColor, TypeParam::content(6)))));
    constexpr bool isOwn = std::is_same_v<T, Plain> || std::is_same_v<T, Subtyped>;
    const auto list = TypeParam::list();
    list->commIs(member);
    for (U8 bits = 0; bits < 32; ++bits) {
      const Kiv::String text = member->toStrepForPolicy(Format(bits));
      OvFmt::StackBackedBuffer<8> ofList, ofValue;
      list->appendPolicyText(ofList, Format(bits));
      member->appendPolicyText(ofValue, Format(bits));
      EXPECT_EQ(text, ofList.view());
      EXPECT_EQ(text, ofValue.view());
      EXPECT_EQ(isOwn, text.find('a') != 0) << text;
      if (bits == 6) TypeParam::expectMatched(*list, *member);
    }
  };
  check(std::type_identity<Plain>());
  check(std::type_identity<Subtyped>());
  check(std::type_identity<Asked<Plain>>());
  check(std::type_identity<Appended<Plain>>());
  check(std::type_identity<Asked<Subtyped>>());
  check(std::type_identity<Asked<Appended<Subtyped>>>());
  check(std::type_identity<Appended<Asked<Subtyped>>>());
  if constexpr (std::is_same_v<Plain, ExtComm>) {
    check(std::type_identity<Asked<ExtCommIpv4Address>>());
    check(std::type_identity<Asked<TwoOctets<ExtCommAsNumber>>>());
    check(std::type_identity<Appended<TwoOctets<ExtCommAsNumber>>>());
  }
}

TYPED_TEST(ExtCommListContract, AttributeHoldsTheMembersAsked) {
  const auto list = this->intern({7, 2, 0});
  const auto notYet = this->build({7, 2, 0});
  notYet->sortComms();
  EXPECT_TRUE(TypeParam::fits(*notYet, true));
  EXPECT_FALSE(TypeParam::fits(*notYet, false)) << "nothing would be written";
  EXPECT_TRUE(TypeParam::fits(*list, false));
  Kiv::String all;
  for (const auto& content : this->contentsIn(*list)) all += TypeParam::wire(content);
  const auto attribute = [](const Kiv::String& value) {
    return Kiv::String{'\xC0', TypeParam::attribute, static_cast<char>(value.size())} + value;
  };
  EXPECT_EQ(attribute(all), TypeParam::serialize(*list, true));
  const Kiv::String transitive = all.substr(0, all.size() * 2 / 3);
  EXPECT_EQ(attribute(transitive), TypeParam::serialize(*list, false));
  EXPECT_EQ("", TypeParam::serialize(*this->intern({7, 3}), false));
  EXPECT_EQ(list, this->internWire(all));
}

TYPED_TEST(ExtCommListContract, AttributeHasALimit) {
  constexpr U32 most = TypeParam::Family::List::maxSerializableComms;
  std::vector<U32> numbers(most);
  for (U32 i = 0; i < most; ++i) numbers[i] = i;
  const auto largest = this->intern(numbers);
  EXPECT_TRUE(TypeParam::fits(*largest, true));
  EXPECT_EQ(4 + most * TypeParam::Family::wireSize, TypeParam::serialize(*largest, true).size());
  numbers.push_back(most);
  const auto tooLarge = this->intern(numbers);
  EXPECT_FALSE(TypeParam::fits(*tooLarge, true));
  EXPECT_DEATH((void)TypeParam::serialize(*tooLarge, true), "attrSize <= 0xFFFF");
}

TYPED_TEST(ExtCommListContract, MisuseStopsTheProcess) {
  const auto list = TypeParam::list();
  EXPECT_DEATH(list->commIs(nullptr), "__null != comm");
  EXPECT_DEATH(list->commIs(TypeParam::notInterned()),
               "__null == \\( comm \\) \\|\\| \\( comm \\)->dedupState\\(\\) != "
               "Dorn::dedupHandleStateNeverDeduped\\(\\).*OvBgp/OvBgpCommunityListImpl");
  EXPECT_DEATH((void)list->totalCommunities(), "commVectorSorted\\(\\).*OvBgpCommunityList");
  EXPECT_DEATH((void)list->classificationList(extCommClassificationColor),
               "__null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != ");
  const auto part = Kiv::Ptr(
      new typename TypeParam::Family::ClassificationList(extCommClassificationRouteOrigin));
  EXPECT_DEATH((void)part->compare(part.ptr()), "commVectorSorted\\(\\)");

  const auto interned = this->build({1});
  EXPECT_EQ(interned, interned->dedup(this->table_.ptr()));
  EXPECT_DEATH((void)interned->dedup(this->table_.ptr()),
               "__null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) == ");
  const auto grouped = this->build({1});
  grouped->createClassificationListVector(false);
  EXPECT_DEATH((void)grouped->dedup(this->table_.ptr()),
               "__null == \\( _classificationList \\) \\|\\| \\( _classificationList \\)->"
               "dedupState\\(\\) == ");
  const auto ungrouped = this->build({1});
  ungrouped->createClassificationListVector(true);
  EXPECT_DEATH((void)ungrouped->hash(), "__null == \\( p \\) .*BgpCommon/BgpHashMixImpl");
}

}  // namespace
}  // namespace Routing::Bgp
