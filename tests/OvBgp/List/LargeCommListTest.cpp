// The properties that only large communities have. tests/OvBgp/List/FlatListContractTest.cpp
// tests what all plain lists have in common.
#include "OvBgp/List/LargeCommList.h"

#include <gtest/gtest.h>

#include <vector>

#include "OvBgp/Value/LargeCommunityFormatter.h"
#include "Routing/RouteMap/PosixRegex.h"

namespace Routing::Bgp {
namespace {

using Acl::CommunityValue;
using LargeValues = std::vector<CommunityValue>;

LargeCommList::PtrConst intern(const LargeValues& values) {
  static const auto table = largeCommListDedupTableFactory();
  const auto list = largeCommListFactory();
  for (const CommunityValue& value : values) list->commIs(value);
  return list->dedup(table.ptr());
}

TEST(LargeCommunityFormatter, WritesAsdotForTheAdministratorOnly) {
  struct Row {
    CommunityValue value;
    const char* plain;
    const char* asdot;
  };
  for (const Row& row : {
           Row{{65000, 1, 2}, "65000:1:2", "65000:1:2"},
           Row{{4200000000, 7, 8}, "4200000000:7:8", "64086.59904:7:8"},
           Row{{65535, 0, 0}, "65535:0:0", "65535:0:0"},
           Row{{65536, 0, 0}, "65536:0:0", "1.0:0:0"},
           Row{{0, 65536, 4294967295}, "0:65536:4294967295", "0:65536:4294967295"},
           Row{{4294967295, 4294967295, 4294967295},
               "4294967295:4294967295:4294967295",
               "65535.65535:4294967295:4294967295"},
       }) {
    EXPECT_EQ(row.plain, LargeCommList::getStringValue(row.value));
    EXPECT_EQ(row.plain, LargeCommList::displayString(row.value, false));
    EXPECT_EQ(row.asdot, LargeCommList::displayString(row.value, true));
    // The formatter appends to what is in the buffer, grows the buffer as needed, and returns the
    // number of characters.
    OvFmt::StackBackedBuffer<1> text;
    text.append("ab");
    EXPECT_EQ(std::string_view(row.asdot).size(),
              LargeCommunityFormatter::format(text, row.value, true));
    EXPECT_EQ(std::string("ab") + row.asdot, text.view());
  }
}

// The length of a long text is computed before it is written. An error would show at the last
// number, which therefore takes every length.
TEST(LargeCommList, LastNumberMayHaveAnyLength) {
  Kiv::String front;
  LargeValues values;
  for (U32 i = 1; i <= 40; ++i) {
    values.emplace_back(i, i * 7, 0);
    front += std::to_string(i) + ":" + std::to_string(i * 7) + ":0 ";
  }
  values.emplace_back(4294967295, 0, 0);
  for (U64 last = 0; last <= 0xFFFFFFFF; last = last * 10 + 9) {
    for (const U64 number : {last, last + 1}) {
      if (number > 0xFFFFFFFF) continue;
      values.back() = {4294967295, 0, static_cast<U32>(number)};
      EXPECT_EQ(front + "4294967295:0:" + std::to_string(number), intern(values)->toStrep());
    }
  }
}

TEST(LargeCommList, RegexNeverSeesAsdot) {
  const auto list = intern({{65000, 1, 2}, {4200000000, 3, 4}});
  const auto matches = [&list](const char* expression) {
    const RouteMap::PosixRegex regex(expression);
    return list->matchCommunitiesRegex(&regex);
  };
  EXPECT_TRUE(matches("^65000:1:2 4200000000:3:4$"));
  EXPECT_FALSE(matches("64086\\.59904:3:4"));
}

}  // namespace
}  // namespace Routing::Bgp
