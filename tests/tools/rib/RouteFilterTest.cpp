// Parsing of filter criteria, and which prefixes pass.
#include "tools/bgp-communities/rib/RouteFilter.h"

#include <gtest/gtest.h>

#include "tools/bgp-communities/bgp/AddressText.h"

namespace CommTool {
namespace {

TEST(RouteFilter, ReadsPrefixes) {
  for (const char* text : {"0.0.0.0/0", "10.0.0.0/8", "192.0.2.128/25", "192.0.2.1/32", "::/0",
                           "2001:db8::/32", "2001:db8::1/128", "2001:db8:0:8000::/49"}) {
    const auto prefix = readPrefixText(text);
    ASSERT_TRUE(prefix) << text;
    EXPECT_EQ(AddressText(*prefix).view(), text);
  }
  EXPECT_EQ(readPrefixText("192.0.2.1")->length, 32);
  EXPECT_EQ(readPrefixText("::1")->length, 128);
  for (const char* text :
       {"", "/8", "10/8", "10.0.0.0/", "10.0.0.0/33", "10.0.0.0/-1", "10.0.0.0/+8", "10.0.0.0/8 ",
        "10.0.0.0/256", "10.0.0.1/8", "192.0.2.128/24", "::/129", "2001:db8::/16", "x::/0"}) {
    EXPECT_FALSE(readPrefixText(text)) << text;
  }
}

TEST(RouteFilter, SaysWhyATextIsNoPrefix) {
  EXPECT_EQ(prefixTextProblem("10.0.0.1/8"),
            "10.0.0.1/8: host bits are set beyond /8 (10.0.0.0/8?)");
  EXPECT_EQ(prefixTextProblem("2001:db8::/16"),
            "2001:db8::/16: host bits are set beyond /16 (2001::/16?)");
  for (const char* text : {"", "10/8", "10.0.0.0/33", "x::/0"}) {
    EXPECT_EQ(prefixTextProblem(text),
              std::string(text) + " is not a prefix such as 192.0.2.0/24 or 2001:db8::/32");
  }
}

TEST(RouteFilter, ReadsAsNumbers) {
  EXPECT_EQ(readAsText("0"), 0U);
  EXPECT_EQ(readAsText("4294967295"), 4294967295U);
  EXPECT_EQ(readAsText("64086.59904"), 4200000000U);
  for (const char* text : {"", ".", "1.", ".1", "1.65536", "65536.1", "4294967296", "-1", "AS1"}) {
    EXPECT_FALSE(readAsText(text)) << text;
  }
}

TEST(RouteFilter, TellsWhatLiesWithin) {
  struct Row {
    const char* inner;
    const char* outer;
    bool within;
  };
  for (const Row& row :
       {Row{"10.0.0.0/8", "10.0.0.0/8", true}, Row{"10.1.0.0/16", "10.0.0.0/8", true},
        Row{"10.0.0.0/7", "10.0.0.0/8", false}, Row{"11.0.0.0/8", "10.0.0.0/8", false},
        Row{"11.0.0.0/8", "10.0.0.0/7", true}, Row{"192.0.2.192/26", "192.0.2.128/25", true},
        Row{"192.0.2.64/26", "192.0.2.128/25", false}, Row{"10.0.0.0/8", "0.0.0.0/0", true},
        Row{"::/0", "0.0.0.0/0", false}, Row{"2001:db8::1", "2001:db8::/127", true},
        Row{"2001:db8::2", "2001:db8::/127", false}}) {
    EXPECT_EQ(isWithin(*readPrefixText(row.inner), *readPrefixText(row.outer)), row.within)
        << row.inner << " in " << row.outer;
  }
}

}  // namespace
}  // namespace CommTool
