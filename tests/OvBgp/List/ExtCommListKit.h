// The fixture for tests that run on both kinds of extended community lists. It makes values
// from numbers, interns them in tables, and makes lists of them.
#ifndef TESTS_OVBGP_LIST_EXTCOMMLISTKIT_H
#define TESTS_OVBGP_LIST_EXTCOMMLISTKIT_H

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/ExtCommIp6List.h"
#include "OvBgp/ExtCommIp6ListDedupTable.h"
#include "OvBgp/List/ExtCommList.h"
#include "OvBgp/List/ExtCommListDedupTable.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {

// The classification of the value with this number, for both kinds: four classifications in
// turn.
constexpr ExtCommClassification extCommKitClassification(U32 number) {
  constexpr ExtCommClassification byRemainder[] = {
      extCommClassificationRouteTarget, extCommClassificationRouteOrigin,
      extCommClassificationColor, extCommClassificationUnSpecified};
  return byRemainder[number % 4];
}
// Whether the value with this number is transitive; those without a classification are not.
constexpr bool extCommKitTransitive(U32 number) { return number % 4 != 3; }

// Communities of eight octets.
struct ExtCommKind {
  using Family = ExtCommFamily;
  using Subtyped = ExtCommSubtyped;
  static constexpr char attribute = 16;

  static ExtCommContent content(U32 number) {
    constexpr U64 byRemainder[] = {0x0002'fde8'0000'0000, 0x0003'fde8'0000'0000,
                                   0x030b'0000'0000'0000, 0x4177'0000'0000'0000};
    return ExtCommContent(byRemainder[number % 4] + number / 4);
  }
  static ExtComm::PtrConst value(const ExtCommDedupTable& table, U32 number) {
    return ExtComm::dedupContent(&table, content(number));
  }
  static Kiv::String wire(const ExtCommContent& content) {
    Kiv::String octets;
    for (int shift = 56; shift >= 0; shift -= 8) {
      octets.push_back(static_cast<char>(content.value() >> shift));
    }
    return octets;
  }
  static ExtCommDedupTable::Ptr valueTable(const BgpParseExtCommContainerSm& parser) {
    return extCommDedupTableFactory(parser.extCommParser());
  }
  static ExtCommListDedupTable::Ptr listTable() { return extCommListDedupTableFactory(); }
  static ExtCommList::Ptr list() { return extCommListFactory(); }
  static U32 partsInterned(const ExtCommListDedupTable& table) {
    return table.extCommClassificationListDedupTable()->size() +
           table.rtExtCommClassificationListDedupTable()->size();
  }
  static Kiv::String serialize(const ExtCommList& list, bool nonTransitive) {
    return list.serialize(ExtCommList::serialization(nonTransitive, false, false));
  }
  static bool fits(const ExtCommList& list, bool nonTransitive) {
    return list.fitsAttribute(ExtCommList::serialization(nonTransitive, false, false));
  }
  // Mode `ui` finds the text of the only member, if policies match the member by that text.
  static void expectMatched(const ExtCommList& list, const ExtComm& member) {
    if (!member.policyMatchStrepUI()) return;
    const RouteMap::PosixRegex text("^" + member.toStrepForUI(false, false, false) + "$");
    EXPECT_TRUE(matchExtCommList(&list, MatchMode::ui, &text));
  }
  static ExtComm::PtrConst lookup(const ExtCommList& list, const ExtCommContent& content) {
    return list.lookupExtComm(content.value());
  }
  static ExtComm::Ptr notInterned() {
    return extCommFactory(extCommClassificationColor, content(2));
  }
};

// Communities of twenty octets. Members of this struct correspond to those of ExtCommKind.
struct ExtCommIp6Kind {
  using Family = ExtCommIp6Family;
  using Subtyped = ExtCommIp6Subtyped;
  static constexpr char attribute = 25;

  static ExtCommIp6Content content(U32 number) {
    Ovnet::Ip6Addr::Octets addr{};
    addr[0] = static_cast<U8>(number);
    addr[15] = static_cast<U8>(number >> 8);
    return {extCommKitTransitive(number) ? U8{0} : U8{0x40}, static_cast<U8>(number % 4),
            Ovnet::Ip6Addr(addr), static_cast<U16>(number / 7)};
  }
  // The rule tree classifies no IPv6 value, so the value is made with its classification and
  // interned directly.
  static ExtCommIp6::PtrConst value(const ExtCommIp6DedupTable& table, U32 number) {
    return Kiv::staticPtrCast<const ExtCommIp6>(
        table.dedup(extCommIp6Factory(extCommKitClassification(number), content(number))));
  }
  static Kiv::String wire(const ExtCommIp6Content& content) {
    Kiv::String octets{static_cast<char>(content.type()), static_cast<char>(content.subtype())};
    for (const U8 octet : content.addr().octets()) octets.push_back(static_cast<char>(octet));
    octets.push_back(static_cast<char>(content.localAdmin() >> 8));
    octets.push_back(static_cast<char>(content.localAdmin()));
    return octets;
  }
  static ExtCommIp6DedupTable::Ptr valueTable(const BgpParseExtCommContainerSm& parser) {
    return extCommIp6DedupTableFactory(parser.extCommParser());
  }
  static ExtCommIp6ListDedupTable::Ptr listTable() { return extCommIp6ListDedupTableFactory(); }
  static ExtCommIp6List::Ptr list() { return extCommIp6ListFactory(); }
  static U32 partsInterned(const ExtCommIp6ListDedupTable& table) {
    return table.extCommClassificationListDedupTable()->size();
  }
  static Kiv::String serialize(const ExtCommIp6List& list, bool nonTransitive) {
    return list.serialize(nonTransitive);
  }
  static bool fits(const ExtCommIp6List& list, bool nonTransitive) {
    return list.fitsAttribute(nonTransitive);
  }
  // The only member's text is that of the list.
  static void expectMatched(const ExtCommIp6List& list, const ExtCommIp6& member) {
    EXPECT_EQ(member.toStrepForPolicy(ExtCommIp6::StrepFormat(U8{2})), list.commsStringForm());
  }
  static ExtCommIp6::PtrConst lookup(const ExtCommIp6List& list, const ExtCommIp6Content& content) {
    return list.lookupExtComm(content);
  }
  static ExtCommIp6::Ptr notInterned() {
    return extCommIp6Factory(extCommClassificationColor, content(2));
  }
};

// The tables of one kind. At the end of each test, they must be empty, and all objects of the
// kind destroyed.
template <class Kind>
class ExtCommListFixture : public testing::Test {
 protected:
  using Family = typename Kind::Family;
  using Value = typename Family::Value;
  using Content = typename Family::Content;
  using List = typename Family::List;
  using ClassificationList = typename Family::ClassificationList;
  using ListPtr = Kiv::Ptr<const List>;
  using Numbers = std::vector<U32>;
  using Contents = std::set<Content>;

  Kiv::Ptr<const Value> value(U32 number) const { return Kind::value(*values_, number); }
  std::vector<Kiv::Ptr<const Value>> valuesOf(const Numbers& numbers) const {
    std::vector<Kiv::Ptr<const Value>> result;
    for (const U32 number : numbers) result.push_back(value(number));
    return result;
  }
  Kiv::Ptr<List> build(const Numbers& numbers) const {
    const auto list = Kind::list();
    for (const U32 number : numbers) list->commIs(value(number));
    return list;
  }
  ListPtr intern(const Numbers& numbers) const { return build(numbers)->dedup(table_.ptr()); }
  ListPtr internWire(const Kiv::String& octets) const {
    return List::dedupAttributeValue(table_.ptr(), values_.ptr(),
                                     {reinterpret_cast<const U8*>(octets.data()), octets.size()});
  }
  static Kiv::String wire(const Numbers& numbers) {
    Kiv::String octets;
    for (const U32 number : numbers) octets += Kind::wire(Kind::content(number));
    return octets;
  }
  static Contents contentsOf(const Numbers& numbers) {
    Contents contents;
    for (const U32 number : numbers) contents.insert(Kind::content(number));
    return contents;
  }
  template <class ListOrPart>
  static std::vector<Content> contentsIn(const ListOrPart& list) {
    std::vector<Content> contents;
    for (const auto& comm : list.commVector()) contents.push_back(comm->getContent());
    return contents;
  }

  void expectNothingInterned() const {
    EXPECT_EQ(0U, table_->size());
    EXPECT_EQ(0U, Kind::partsInterned(*table_));
    EXPECT_EQ(0U, values_->size());
  }
  void TearDown() override {
    expectNothingInterned();
    EXPECT_EQ(0U, List::kivType().objects());
    EXPECT_EQ(0U, ClassificationList::kivType().objects());
    EXPECT_EQ(0U, KivStash::arrayType<Kiv::Ptr<const Value>>().bytes());
    EXPECT_EQ(0U, KivStash::arrayType<Kiv::Ptr<const ClassificationList>>().bytes());
  }

  const BgpParseExtCommContainerSm::Ptr parser_ = bgpParseExtCommContainerSmFactory();
  const Kiv::Ptr<typename Family::ValueTable> values_ = Kind::valueTable(*parser_);
  const Kiv::Ptr<typename Family::ListTable> table_ = Kind::listTable();
};

}  // namespace Routing::Bgp

#endif
