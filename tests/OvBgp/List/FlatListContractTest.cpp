// The properties of all plain lists, tested for standard and for large communities.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iomanip>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "Kiv/Exception.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {
namespace {

// Standard communities. A kind says how members are made from numbers, so that greater numbers
// give greater members, and which words a member consists of.
struct Standard {
  using List = CommList;
  using Table = CommListDedupTable;
  using Element = U32;
  static constexpr char attribute = 8;
  static constexpr auto* attributeName = "COMMUNITIES";
  static constexpr auto* className = "CommList";
  static constexpr auto* argument = "U32";

  // Never a community that has a name.
  static U32 member(U32 number) { return 0x00010000 + number % 0xFFF00000; }
  static std::vector<U32> words(U32 member) { return {member}; }
  static std::vector<U32> numbers(U32 member) { return {member >> 16, member & 0xFFFF}; }
  static CommList::Ptr make() { return commListFactory(); }
  static CommListDedupTable::Ptr table() { return commListDedupTableFactory(); }
};

// Large communities.
struct Large {
  using List = LargeCommList;
  using Table = LargeCommListDedupTable;
  using Element = Acl::CommunityValue;
  static constexpr char attribute = 32;
  static constexpr auto* attributeName = "LARGE_COMMUNITY";
  static constexpr auto* className = "LargeCommList";
  static constexpr auto* argument = "const Acl::CommunityValue&";

  static Element member(U32 number) { return {number / 65536, number / 16 % 4096, number % 16}; }
  static std::vector<U32> words(const Element& m) {
    return {m.globalAdmin(), m.localData1(), m.localData2()};
  }
  static std::vector<U32> numbers(const Element& m) { return words(m); }
  static LargeCommList::Ptr make() { return largeCommListFactory(); }
  static LargeCommListDedupTable::Ptr table() { return largeCommListDedupTableFactory(); }
};

template <class Kind>
class FlatListContract : public testing::Test {
 protected:
  using Element = typename Kind::Element;
  using List = typename Kind::List;
  using Members = std::vector<Element>;

  static Members numbered(std::initializer_list<U32> numbers) {
    Members members;
    for (const U32 number : numbers) members.push_back(Kind::member(number));
    return members;
  }
  // The members with the numbers from 0 to `count` - 1.
  static Members first(U32 count) {
    Members members;
    for (U32 number = 0; number < count; ++number) members.push_back(Kind::member(number));
    return members;
  }
  static typename List::Ptr build(const Members& members) {
    typename List::Ptr list = Kind::make();
    for (const Element& member : members) list->commIs(member);
    return list;
  }
  typename List::PtrConst intern(const Members& members) {
    return build(members)->dedup(table_.ptr());
  }
  static Kiv::String wire(const Members& members) {
    Kiv::String octets;
    for (const Element& member : members) {
      for (const U32 word : Kind::words(member)) {
        for (const int shift : {24, 16, 8, 0}) octets.push_back(static_cast<char>(word >> shift));
      }
    }
    return octets;
  }
  static std::span<const U8> octets(const Kiv::String& text) {
    return {reinterpret_cast<const U8*>(text.data()), text.size()};
  }
  typename List::PtrConst internWire(const Kiv::String& value) {
    return List::dedupAttributeValue(table_.ptr(), octets(value));
  }
  static Members contents(const List& list) {
    return {list.commVectorRawPtr()->begin(), list.commVectorRawPtr()->end()};
  }
  static Kiv::String text(const Members& members) {
    Kiv::String text;
    for (const Element& member : members) {
      char separator = text.empty() ? '\0' : ' ';
      for (const U32 number : Kind::numbers(member)) {
        if (separator != '\0') text += separator;
        text += std::to_string(number);
        separator = ':';
      }
    }
    return text;
  }

  // Random members, sorted or not: usually few of them, and often from a small range, so that
  // members repeat and lists are equal.
  static Members randomMembers(std::mt19937& random) {
    const U32 range = std::array<U32, 3>{4, 150, 0xFFFFFFFF}[random() % 3];
    Members members(random() % 10 < 9 ? random() % 5 : random() % 150);
    for (Element& member : members) member = Kind::member(static_cast<U32>(random()) % range);
    if (random() % 2 == 0) std::sort(members.begin(), members.end());
    return members;
  }
  static void expectMembers(const std::set<Element>& model, const List& list) {
    EXPECT_EQ(Members(model.begin(), model.end()), contents(list));
    EXPECT_EQ(model.size(), list.commVectorRawPtr()->capacity());
  }

  void TearDown() override {
    EXPECT_EQ(0U, table_->size()) << "the last user of a list takes it from its table";
    table_ = nullptr;
    EXPECT_EQ(0U, List::kivType().objects());
    EXPECT_EQ(0U, KivStash::arrayType<Element>().bytes());
  }

  typename Kind::Table::Ptr table_ = Kind::table();
};

using FlatKinds = testing::Types<Standard, Large>;
TYPED_TEST_SUITE(FlatListContract, FlatKinds);

TYPED_TEST(FlatListContract, DedupSortsDropsRepeatsAndShares) {
  const auto list = this->intern(this->numbered({5, 5, 3}));
  EXPECT_EQ(this->numbered({3, 5}), this->contents(*list));
  EXPECT_EQ(2U, list->comms());
  EXPECT_EQ(2U, list->commVectorRawPtr()->capacity());
  EXPECT_TRUE(list->comm(TypeParam::member(5)));
  for (const U32 absent : {0U, 4U, 6U}) EXPECT_FALSE(list->comm(TypeParam::member(absent)));
  EXPECT_EQ(list, this->intern(this->numbered({3, 5, 3})));
  EXPECT_NE(list, this->intern(this->numbered({3})));
  EXPECT_EQ(1U, this->table_->size());

  const auto empty = this->intern({});
  EXPECT_TRUE(empty->empty());
  EXPECT_EQ(empty, this->internWire(""));

  // A list that is interned already is returned by dedup as it is.
  const auto again = this->build(this->numbered({9}));
  const auto once = again->dedup(this->table_.ptr());
  EXPECT_EQ(again, once);
  EXPECT_EQ(once, again->dedup(this->table_.ptr()));
}

TYPED_TEST(FlatListContract, FactoriesSwitchNotificationOn) {
  EXPECT_TRUE(TypeParam::make()->hasNotificationActive());
  EXPECT_TRUE(this->table_->hasNotificationActive());
}

// A lookup by wire content finds a list if and only if the list is interned and the content
// ascends.
TYPED_TEST(FlatListContract, ContentsAreLookedUp) {
  const auto list = this->intern(this->numbered({70000, 1, 2}));
  U32 hash = list->hash();
  const auto find = [&](const Kiv::String& value) {
    const CommListContent content(this->octets(value));
    return this->table_->dedupTable()->lookupByContent(content, hash);
  };
  EXPECT_EQ(list, find(this->wire(this->numbered({1, 2, 70000}))));
  EXPECT_EQ(nullptr, find(this->wire(this->numbered({2, 1, 70000})))) << "not ascending";
  EXPECT_EQ(nullptr, find(this->wire(this->numbered({1, 2}))));
  EXPECT_EQ(nullptr, find(""));
  ++hash;
  EXPECT_EQ(nullptr, find(this->wire(this->numbered({1, 2, 70000})))) << "another hash";

  // The comparison itself, without the hash, which would hide its faults.
  const auto equals = [&](const Kiv::String& value) {
    return list->compareByContent(CommListContent(this->octets(value)));
  };
  EXPECT_TRUE(equals(this->wire(this->numbered({1, 2, 70000}))));
  EXPECT_FALSE(equals(this->wire(this->numbered({1, 2, 70000, 70001}))));
  EXPECT_FALSE(equals(this->wire(this->numbered({1, 2, 70001}))));
  EXPECT_FALSE(equals(""));
}

// Twelve routes get and lose random lists. The table must contain exactly the distinct lists
// that the routes have.
TYPED_TEST(FlatListContract, RandomRunMatchesAModel) {
  std::mt19937 random(11);
  std::array<typename TypeParam::List::PtrConst, 12> routes;
  std::array<std::set<typename TypeParam::Element>, routes.size()> models;
  for (int operation = 0; operation < 4000; ++operation) {
    const std::size_t at = random() % routes.size();
    if (random() % 4 == 0) {
      routes[at] = nullptr;
    } else {
      const auto members = this->randomMembers(random);
      models[at] = {members.begin(), members.end()};
      routes[at] =
          random() % 2 == 0 ? this->intern(members) : this->internWire(this->wire(members));
      this->expectMembers(models[at], *routes[at]);
      const auto probe = TypeParam::member(static_cast<U32>(random()) % 150);
      EXPECT_EQ(models[at].contains(probe), routes[at]->comm(probe));
    }
    std::set<typename decltype(models)::value_type> carried;
    for (std::size_t i = 0; i < routes.size(); ++i) {
      if (routes[i]) carried.insert(models[i]);
    }
    ASSERT_EQ(carried.size(), this->table_->size());
  }
}

// These lists have more members than are decoded on the stack.
TYPED_TEST(FlatListContract, LongListsArriveInAnyOrder) {
  auto members = this->first(1000);
  const auto list = this->internWire(this->wire(members));
  EXPECT_EQ(members, this->contents(*list));
  members.push_back(members[7]);
  std::shuffle(members.begin(), members.end(), std::mt19937(3));
  EXPECT_EQ(list, this->internWire(this->wire(members)));
  EXPECT_EQ(list, this->intern(members));
}

TYPED_TEST(FlatListContract, WireValueOfOddLengthIsRefused) {
  constexpr std::size_t size = sizeof(typename TypeParam::Element);
  for (const std::size_t length : {std::size_t{1}, size - 1, size + 1, 20 * size + 2}) {
    try {
      this->internWire(Kiv::String(length, 'x'));
      ADD_FAILURE() << "took " << length;
    } catch (const Kiv::RangeException& error) {
      EXPECT_EQ(Kiv::String("length of ") + TypeParam::attributeName + " is no multiple of " +
                    std::to_string(size) + ": " + std::to_string(length),
                error.what());
    }
  }
}

// The hash is the one-at-a-time hash of the words, each with its least significant octet first.
TYPED_TEST(FlatListContract, HashIsOneAtATimeAndByteOrderMatters) {
  const auto reference = [](const auto& members, bool littleEndian) {
    U32 h = 0;
    for (const auto& member : members) {
      for (const U32 word : TypeParam::words(member)) {
        for (const U32 octet : {0U, 1U, 2U, 3U}) {
          h += word >> 8 * (littleEndian ? octet : 3 - octet) & 0xFF;
          h *= 1025;
          h ^= h / 64;
        }
      }
    }
    h *= 9;
    h ^= h / 2048;
    return h * 32769;
  };
  EXPECT_EQ(0U, this->intern({})->hash());
  for (const auto& members :
       {this->numbered({0x61626364}), this->numbered({1, 77, 0x12345678}), this->first(30)}) {
    EXPECT_EQ(reference(members, true), this->intern(members)->hash());
    EXPECT_NE(reference(members, false), this->intern(members)->hash());
  }
}

// The lists have few or many members, so that the text fits a buffer on the stack or not, and
// their numbers have every number of digits.
TYPED_TEST(FlatListContract, TextJoinsMembersByBlanks) {
  auto scattered = this->first(1);
  for (U32 number = 1; number < 0x70000000; number += number / 3 + 1) {
    scattered.push_back(TypeParam::member(number));
  }
  for (const auto& members : {this->first(0), this->first(1), this->first(2), this->first(5),
                              this->first(9), this->first(25), scattered, this->first(3000)}) {
    const auto list = this->intern(members);
    EXPECT_EQ(this->text(members), list->toStrep());
    std::ostringstream out;
    out << std::hex << std::setw(40) << std::setfill('*') << list.ptr();
    EXPECT_EQ(this->text(members), out.str());
    EXPECT_EQ(40, out.width()) << "the caller's format is not touched";
  }
  std::ostringstream none;
  none << static_cast<const typename TypeParam::List*>(nullptr);
  EXPECT_EQ("", none.str());
}

TYPED_TEST(FlatListContract, SerializesAsPathAttribute) {
  EXPECT_EQ(Kiv::String({'\xC0', TypeParam::attribute, '\0'}), this->intern({})->serialize());
  for (const U32 count : {1U, 2U, 21U, 22U, 63U, 64U, 2000U}) {
    const auto members = this->first(count);
    const Kiv::String value = this->wire(members);
    const bool isLong = value.size() > 255;
    Kiv::String header{isLong ? '\xD0' : '\xC0', TypeParam::attribute};
    if (isLong) header.push_back(static_cast<char>(value.size() >> 8));
    header.push_back(static_cast<char>(value.size()));
    EXPECT_EQ(header + value, this->intern(members)->serialize());
  }
}

TYPED_TEST(FlatListContract, SerializesUpToTheLengthThatFits) {
  auto members = this->first(TypeParam::List::maxSerializableComms);
  const auto largest = this->intern(members);
  EXPECT_TRUE(largest->fitsAttribute());
  EXPECT_EQ(4 + this->wire(members).size(), largest->serialize().size());
  members.push_back(TypeParam::member(0x7FFFFFFF));
  const auto tooLarge = this->intern(members);
  EXPECT_FALSE(tooLarge->fitsAttribute());
  EXPECT_DEATH(tooLarge->serialize(), "\"attrSize <= 0xFFFF\" failed in OvBgp/OvBgpSerialize");
}

// A list that is not interned yet has its members in the order in which they were appended.
TYPED_TEST(FlatListContract, ListUnderConstructionHasTextAndAttribute) {
  const auto members = this->numbered({5, 3, 5});
  const auto list = this->build(members);
  EXPECT_EQ(this->text(members), list->toStrep());
  EXPECT_EQ(this->wire(members), list->serialize().substr(3));
  EXPECT_FALSE(list->commVectorSorted());
}

TYPED_TEST(FlatListContract, RegexSeesTheListAsOneLine) {
  const auto members = this->numbered({1, 70000});
  const auto list = this->intern(members);
  const Kiv::String text = this->text(members);
  const auto matches = [](const auto& which, const Kiv::String& expression) {
    const RouteMap::PosixRegex regex(expression);
    return which->matchCommunitiesRegex(&regex);
  };
  EXPECT_TRUE(matches(list, "^" + text + "$"));
  EXPECT_TRUE(matches(list, "^[0-9:]+ [0-9:]+$"));
  EXPECT_FALSE(matches(list, "^[0-9:]+$"));
  EXPECT_FALSE(matches(list, ","));
  EXPECT_TRUE(matches(this->intern({}), "^$"));
  EXPECT_FALSE(matches(this->intern({}), "1"));
  EXPECT_TRUE(matches(this->intern(this->first(500)), this->text({TypeParam::member(499)}) + "$"));
}

TYPED_TEST(FlatListContract, TableDumpsItself) {
  const auto list = this->intern(this->numbered({1}));
  std::ostringstream out;
  const auto context = Dorn::dumpContextFactory(out);
  this->table_->dumpState(context, 0);
  this->table_->dumpState(context, 2);
  EXPECT_EQ(
      "DedupTable  DedupHashTable members #1;\n"
      "  DedupTable    DedupHashTable members #1;\n",
      out.str());
}

TYPED_TEST(FlatListContract, MisuseStopsTheProcess) {
  const auto unsorted = this->build(this->numbered({1}));
  const auto shared = this->build(this->numbered({2}));
  const auto keep = shared->dedup(this->table_.ptr());
  const auto fails = [](const Kiv::String& condition, const Kiv::String& before,
                        const Kiv::String& after) {
    Kiv::String expected = "\"" + condition + "\" failed in OvBgp/OvBgpCommunityList:[0-9]+, " +
                           before + "Routing::Bgp::" + TypeParam::className + "::" + after;
    for (std::size_t at = 0; (at = expected.find_first_of("()", at)) != Kiv::String::npos;
         at += 2) {
      expected.insert(at, 1, '\\');
    }
    return expected;
  };
  const Kiv::String argument = TypeParam::argument;
  EXPECT_DEATH(shared->commIs(TypeParam::member(1)),
               fails("!commVectorSorted()", "void ", "commIs(" + argument + ")"));
  EXPECT_DEATH(unsorted->comm(TypeParam::member(1)),
               fails("commVectorSorted()", "bool ", "comm(" + argument + ") const"));
  EXPECT_DEATH(unsorted->hash(), fails("commVectorSorted()", "virtual U32 ", "hash() const"));
  EXPECT_DEATH(unsorted->compare(keep.ptr()),
               fails("commVectorSorted()", "virtual bool ",
                     "compare(Dorn::DedupHandle::RawPtrConst) const"));
}

}  // namespace
}  // namespace Routing::Bgp
