// The properties that only standard communities have: names, and the flags by which routes are
// filtered. tests/OvBgp/List/FlatListContractTest.cpp tests what all plain lists have in common.
#include <gtest/gtest.h>

#include <vector>

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

CommList::PtrConst internWire(const CommListDedupTable::Ptr& table, const Comms& comms) {
  std::vector<U8> octets;
  for (const U32 c : comms) {
    for (const int shift : {24, 16, 8, 0}) octets.push_back(static_cast<U8>(c >> shift));
  }
  return CommList::dedupAttributeValue(table.ptr(), octets);
}

class CommListTest : public testing::Test {
 protected:
  CommListDedupTable::Ptr table_ = commListDedupTableFactory();
};

TEST_F(CommListTest, FlagsAreThoseOfTheMembers) {
  struct Row {
    Comms comms;
    bool noExport, noAdvertise, noExportSubconfed;
  };
  for (const Row& row :
       {Row{{}, false, false, false}, Row{{0xFFFFFF01, 0xFFFFFF03}, true, false, true},
        Row{{1, 0xFFFFFF02}, false, true, false},
        Row{{0xFFFFFF00, 0xFFFFFF04}, false, false, false}}) {
    for (const auto& list : {intern(table_, row.comms), internWire(table_, row.comms)}) {
      EXPECT_EQ(row.noExport, list->noExport()) << list.ptr();
      EXPECT_EQ(row.noAdvertise, list->noAdvertise()) << list.ptr();
      EXPECT_EQ(row.noExportSubconfed, list->noExportSubconfed()) << list.ptr();
    }
  }
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
        Row{{0xFFFFFFFF, 1}, "0:1 65535:65535"},
        // A list long enough that its text is measured first. The names are at both ends.
        Row{{0, 1, 2, 3, 4, 5, 6, 0xFFFF0000, 0xFFFFFF01, 0xFFFFFF02},
            "internet 0:1 0:2 0:3 0:4 0:5 0:6 GSHUT no-export no-advertise"}}) {
    EXPECT_EQ(row.text, intern(table_, row.comms)->toStrep());
  }
  EXPECT_EQ("65535:65281", CommList::getStringValue(0xFFFFFF01));
  EXPECT_EQ("no-export", CommList::wellKnownName(0xFFFFFF01));
  EXPECT_EQ("", CommList::wellKnownName(0xFFFFFF04));
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
        Row{{0, 0x00010001}, "^internet 1:1$", true},
        // A text has all members as numbers, or all that have names by name, never a mixture.
        Row{{0, 0xFFFFFF01}, "internet 65535:65281", false}}) {
    const RouteMap::PosixRegex regex(row.expression);
    const auto list = intern(table_, row.comms);
    EXPECT_EQ(row.matches, list->matchCommunitiesRegex(&regex)) << row.expression;
  }
}

TEST(CommListDeathTest, FlagsOfAListNeverInternedStopTheProcess) {
  const auto list = build({1});
  const Kiv::String failed =
      "\"__null == \\( this \\) \\|\\| \\( this \\)->dedupState\\(\\) != "
      "Dorn::dedupHandleStateNeverDeduped\\(\\)\" failed in "
      "OvBgp/OvBgpCommunityList:[0-9]+, bool Routing::Bgp::CommList::";
  EXPECT_DEATH(list->noExport(), failed + "noExport\\(\\) const");
  EXPECT_DEATH(list->noAdvertise(), failed + "noAdvertise\\(\\) const");
  EXPECT_DEATH(list->noExportSubconfed(), failed + "noExportSubconfed\\(\\) const");
}

}  // namespace
}  // namespace Routing::Bgp
