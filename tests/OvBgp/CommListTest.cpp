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

using Comms = std::vector<U32>;

CommList::Ptr build(const Comms& comms) {
  CommList::Ptr list = commListFactory();
  for (const U32 community : comms) list->commIs(community);
  return list;
}

CommList::PtrConst intern(const CommListDedupTable::Ptr& table, const Comms& comms) {
  return build(comms)->dedup(table.ptr());
}

Comms contents(const CommList& list) {
  return {list.commVectorRawPtr()->begin(), list.commVectorRawPtr()->end()};
}

Kiv::String wire(const Comms& comms) {
  Kiv::String octets;
  for (const U32 c : comms) {
    for (const int shift : {24, 16, 8, 0}) octets.push_back(static_cast<char>(c >> shift));
  }
  return octets;
}

CommList::PtrConst internWire(const CommListDedupTable::Ptr& table, const Kiv::String& octets) {
  return CommList::dedupAttributeValue(table.ptr(),
                                       {reinterpret_cast<const U8*>(octets.data()), octets.size()});
}

class CommListTest : public testing::Test {
 protected:
  void TearDown() override {
    table_ = nullptr;
    EXPECT_EQ(0U, CommList::kivType().objects());
    EXPECT_EQ(0U, KivStash::arrayType<U32>().bytes());
  }

  CommListDedupTable::Ptr table_ = commListDedupTableFactory();
};

TEST_F(CommListTest, DedupSortsDropsRepeatsAndShares) {
  const auto list = intern(table_, {5, 5, 3});
  EXPECT_EQ((Comms{3, 5}), contents(*list));
  EXPECT_EQ(2U, list->commVectorRawPtr()->capacity());
  EXPECT_TRUE(list->comm(5));
  EXPECT_FALSE(list->comm(4));
  EXPECT_FALSE(list->comm(6));
  EXPECT_EQ(list, intern(table_, {3, 5, 3}));
  EXPECT_NE(list, intern(table_, {3}));
  EXPECT_EQ(1U, table_->size());

  // Given to dedup once more, an interned list is its own answer.
  const CommList::Ptr again = build({9});
  const auto first = again->dedup(table_.ptr());
  EXPECT_EQ(again, first);
  EXPECT_EQ(first, again->dedup(table_.ptr()));
}

TEST_F(CommListTest, RandomListsFromWireAndFromHandMatchASet) {
  std::mt19937 random(11);
  for (int round = 0; round < 300; ++round) {
    Comms comms(random() % 150);
    const U32 range = round % 2 == 0 ? 40 : 0xFFFFFFFF;
    for (U32& c : comms) c = static_cast<U32>(random()) % range;
    const std::set<U32> model(comms.begin(), comms.end());
    const auto fromWire = internWire(table_, wire(comms));
    EXPECT_EQ(Comms(model.begin(), model.end()), contents(*fromWire));
    std::shuffle(comms.begin(), comms.end(), random);
    const auto fromHand = intern(table_, comms);
    EXPECT_EQ(fromWire, fromHand);
    for (const U32 c : comms) EXPECT_TRUE(fromHand->comm(c));
  }
  EXPECT_EQ(0U, table_->size());
}

TEST_F(CommListTest, WireValueOfOddLengthIsRefused) {
  for (const std::size_t length : {1U, 2U, 3U, 5U, 257U}) {
    EXPECT_THROW(internWire(table_, Kiv::String(length, 'x')), Kiv::RangeException);
  }
  EXPECT_TRUE(internWire(table_, "")->empty());
}

TEST_F(CommListTest, FlagsAreThoseOfTheMembers) {
  struct Row {
    Comms comms;
    bool noExport, noAdvertise, noExportSubconfed;
  };
  for (const Row& row :
       {Row{{}, false, false, false}, Row{{0xFFFFFF01, 0xFFFFFF03}, true, false, true},
        Row{{1, 0xFFFFFF02}, false, true, false},
        Row{{0xFFFFFF00, 0xFFFFFF04}, false, false, false}}) {
    for (const auto& list : {intern(table_, row.comms), internWire(table_, wire(row.comms))}) {
      EXPECT_EQ(row.noExport, list->noExport()) << list.ptr();
      EXPECT_EQ(row.noAdvertise, list->noAdvertise()) << list.ptr();
      EXPECT_EQ(row.noExportSubconfed, list->noExportSubconfed()) << list.ptr();
    }
  }
}

// Reference values of the byte hash, least significant byte first.
TEST_F(CommListTest, HashIsOneAtATimeAndByteOrderMatters) {
  EXPECT_EQ(0U, intern(table_, {})->hash());
  // The well-known value of the one-at-a-time hash of "abcd".
  U32 h = 0;
  for (const U8 c : std::array<U8, 4>{0x61, 0x62, 0x63, 0x64}) {
    h += c;
    h *= 1025;
    h ^= h / 64;
  }
  h *= 9;
  h ^= h / 2048;
  h *= 32769;
  EXPECT_EQ(h, intern(table_, {0x64636261})->hash());
  EXPECT_NE(h, intern(table_, {0x61626364})->hash());
}

TEST_F(CommListTest, TextNamesTheWellKnown) {
  struct Row {
    Comms comms;
    const char* text;
  };
  for (const Row& row :
       {Row{{}, ""}, Row{{0x00640001}, "100:1"}, Row{{0}, "internet"}, Row{{0xFFFF0000}, "GSHUT"},
        Row{{0xFFFF0006}, "llgr-stale"}, Row{{0xFFFF0007}, "no-llgr"}, Row{{0xFFFF0008}, "65535:8"},
        Row{{0xFFFFFF03}, "local-as"}, Row{{0xFFFFFF02}, "no-advertise"},
        Row{{0xFFFFFF01, 0x00010001, 0x006400C8}, "1:1 100:200 no-export"},
        Row{{0xFFFFFFFF, 1}, "0:1 65535:65535"}}) {
    const auto list = intern(table_, row.comms);
    EXPECT_EQ(row.text, list->toStrep());
    std::ostringstream out;
    out << std::hex << std::setw(40) << std::setfill('*') << list.ptr();
    EXPECT_EQ(row.text, out.str());
    EXPECT_EQ(40, out.width()) << "the caller's format is not touched";
  }
  EXPECT_EQ("65535:65281", CommList::getStringValue(0xFFFFFF01));
  EXPECT_EQ("no-export", CommList::wellKnownName(0xFFFFFF01));
  EXPECT_EQ("", CommList::wellKnownName(0xFFFFFF04));
  std::ostringstream none;
  none << static_cast<const CommList*>(nullptr);
  EXPECT_EQ("", none.str());
}

// Longer than any inline room, every number of digits, names in between.
TEST_F(CommListTest, LongListsPrintWhole) {
  Comms comms;
  Kiv::String expected;
  for (U32 i = 1; i <= 3000; ++i) {
    const U32 as = i * 21;
    comms.push_back(as << 16 | (i % 5 == 0 ? 0 : as % 10007));
    expected += std::to_string(as) + ":" + std::to_string(comms.back() & 0xFFFF) + " ";
  }
  comms.push_back(0xFFFFFF01);
  EXPECT_EQ(expected + "no-export", intern(table_, comms)->toStrep());
}

TEST_F(CommListTest, SerializesAsPathAttribute) {
  EXPECT_EQ(Kiv::String("\xC0\x08\x00", 3), intern(table_, {})->serialize());
  EXPECT_EQ(Kiv::String("\xC0\x08\x08\x00\x01\x00\x02\xFF\xFF\xFF\x01", 11),
            intern(table_, {0xFFFFFF01, 0x00010002})->serialize());
  Comms many(64);
  for (U32 i = 0; i < many.size(); ++i) many[i] = i;
  const Kiv::String attribute = intern(table_, many)->serialize();
  EXPECT_EQ(Kiv::String("\xD0\x08\x01\x00", 4) + wire(many), attribute);
}

TEST_F(CommListTest, SerializesUpToTheLengthThatFits) {
  Comms comms(CommList::maxSerializableComms);
  for (U32 i = 0; i < comms.size(); ++i) comms[i] = i;
  const auto largest = intern(table_, comms);
  EXPECT_TRUE(largest->fitsAttribute());
  EXPECT_EQ(4U + 4 * comms.size(), largest->serialize().size());
  comms.push_back(0xFFFFFFFF);
  const auto tooLarge = intern(table_, comms);
  EXPECT_FALSE(tooLarge->fitsAttribute());
  EXPECT_DEATH(tooLarge->serialize(), "\"attrSize <= 0xFFFF\" failed in OvBgp/OvBgpSerialize");
}

TEST_F(CommListTest, RegexSeesNumbersThenNames) {
  struct Row {
    Comms comms;
    const char* expression;
    bool matches;
  };
  for (const Row& row :
       {Row{{0xFFFFFF01}, "no-export", true}, Row{{0xFFFFFF01}, "^no-export$", true},
        Row{{0xFFFFFF01}, "65535:65281", true}, Row{{0x00010001}, "internet", false},
        Row{{0}, "0:0", true}, Row{{0}, "internet", true}, Row{{0xFFFF0006}, "llgr-stale", true},
        Row{{0x00010001, 0x00020002}, "1:1 2:2", true},
        Row{{0x00010001, 0x00020002}, "^1:1 2:2$", true},
        Row{{0x00010001, 0x00020002}, "1:1,2:2", false},
        // The forms are never mixed.
        Row{{0, 0xFFFFFF01}, "internet 65535:65281", false}, Row{{}, "^$", true},
        Row{{}, "1", false}}) {
    const RouteMap::PosixRegex regex(row.expression);
    const auto list = intern(table_, row.comms);
    EXPECT_EQ(row.matches, list->matchCommunitiesRegex(&regex)) << row.expression;
  }
}

TEST_F(CommListTest, TableDumpsItself) {
  const auto list = intern(table_, {1});
  std::ostringstream out;
  const auto context = Dorn::dumpContextFactory(out);
  table_->dumpState(context, 0);
  table_->dumpState(context, 2);
  EXPECT_EQ(
      "DedupTable  DedupHashTable members #1;\n"
      "  DedupTable    DedupHashTable members #1;\n",
      out.str());
}

TEST(CommListDeathTest, MisuseStopsTheProcess) {
  const auto table = commListDedupTableFactory();
  const auto unsorted = build({1});
  const auto shared = build({2});
  const auto keep = shared->dedup(table.ptr());
  EXPECT_DEATH(shared->commIs(1),
               "\"!commVectorSorted\\(\\)\" failed in OvBgp/OvBgpCommunityList:[0-9]+, "
               "void Routing::Bgp::CommList::commIs\\(U32\\)");
  EXPECT_DEATH(unsorted->comm(1),
               "\"commVectorSorted\\(\\)\" failed in OvBgp/OvBgpCommunityList:[0-9]+, "
               "bool Routing::Bgp::CommList::comm\\(U32\\) const");
  EXPECT_DEATH(unsorted->hash(), "virtual U32 Routing::Bgp::CommList::hash\\(\\) const");
  EXPECT_DEATH(unsorted->compare(keep.ptr()), "virtual bool Routing::Bgp::CommList::compare");
  EXPECT_DEATH(
      unsorted->noExport(),
      "\"__null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != "
      "Dorn::dedupHandleStateNeverDeduped\\(\\)\" failed in "
      "OvBgp/OvBgpCommunityList:[0-9]+, bool Routing::Bgp::CommList::noExport\\(\\) const");
}

}  // namespace
}  // namespace Routing::Bgp
