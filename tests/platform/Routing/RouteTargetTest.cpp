#include "Routing/Bgp/RouteTarget.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <random>
#include <sstream>
#include <unordered_set>

#include "Kiv/Exception.h"
#include "tests/Texts.h"

namespace Routing::Bgp {
namespace {

TEST(RouteTarget, TextNamesTheThreeFormsAndNothingElse) {
  const struct {
    U64 value;
    const char* text;
    const char* asdot;
  } rows[] = {
      {0x0002'fde8'0000'0064, "65000:100", "65000:100"},
      {0x0002'0000'0000'0000, "0:0", "0:0"},
      {0x0002'ffff'ffff'ffff, "65535:4294967295", "65535:4294967295"},
      {0x0102'c000'0201'0064, "192.0.2.1:100", "192.0.2.1:100"},
      {0x0102'0000'0000'ffff, "0.0.0.0:65535", "0.0.0.0:65535"},
      {0x0202'0001'1170'0064, "70000:100", "1.4464:100"},
      {0x0202'0000'fde8'0064, "65000:100", "65000:100"},
      {0x0202'0001'0000'0001, "65536:1", "1.0:1"},
      {0x0202'ffff'ffff'ffff, "4294967295:65535", "65535.65535:65535"},
      {0x0302'fde8'0000'0064, "0x0302fde800000064", "0x0302fde800000064"},
      {0x0003'fde8'0000'0064, "0x0003fde800000064", "0x0003fde800000064"},
      {0x4002'fde8'0000'0064, "0x4002fde800000064", "0x4002fde800000064"},
      {0x8002'0000'0000'0000, "0x8002000000000000", "0x8002000000000000"},
      {0, "0x0000000000000000", "0x0000000000000000"},
  };
  for (const auto& row : rows) {
    const RouteTarget target(row.value);
    EXPECT_EQ(row.text, target.toStrep(false));
    EXPECT_EQ(row.asdot, target.toStrep(true));
    EXPECT_EQ(target.isRouteTarget(), row.text[1] != 'x') << row.text;
    // The one ambiguous text: a four-octet AS number below 65536 is read back as the two-octet
    // form.
    if (row.value == 0x0202'0000'fde8'0064) continue;
    EXPECT_EQ(target, RouteTarget(row.text)) << row.text;
    EXPECT_EQ(target, RouteTarget(row.asdot)) << row.asdot;
  }
  std::ostringstream out;
  out << std::hex << std::setw(30) << RouteTarget(rows[0].value);
  EXPECT_EQ("65000:100", out.str());
}

TEST(RouteTarget, ReadsFurtherSpellings) {
  const struct {
    const char* text;
    U64 value;
  } rows[] = {
      {"0.100:5", 0x0202'0000'0064'0005},
      {"007:08", 0x0002'0007'0000'0008},
      {"0xABCDEFabcdef0123", 0xabcdefabcdef0123},
      {"65536:65535", 0x0202'0001'0000'ffff},
  };
  for (const auto& row : rows) EXPECT_EQ(RouteTarget(row.value), RouteTarget(row.text)) << row.text;
}

TEST(RouteTarget, RefusesAllOtherText) {
  for (const std::string& text :
       Texts::split("|:|1|1:|:1|1:2:3|-1:2|+1:2| 1:2|1:2 |1:4294967296|4294967296:1|65536:65536|"
                    "1.2:65536|1.65536:1|65536.1:1|1.:1|.1:1|1.2.3:1|1.2.3.4.5:1|1.2.3.256:1|"
                    "1.2.3.4:65536|1..2.3:1|0x|0x1:1|0x0123456789abcde|0x0123456789abcdef0|"
                    "0x0123456789abcdeg|0X0123456789abcdef|0x-123456789abcdef|a:1")) {
    EXPECT_THROW(RouteTarget(std::string_view(text)), Kiv::RangeException) << text;
  }
}

TEST(RouteTarget, ValueFormTellsAllNumbersApart) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 200; ++i) {
    const RouteTarget target(i % 2 == 0 ? random() : random() >> 48 << 16 | 0x0202ULL << 48);
    const Kiv::String form = valueToStrep(target) + "rest";
    const char* it = form.data();
    RouteTarget read;
    sequenceToValue(it, form.data() + form.size(), &read);
    EXPECT_EQ(target, read);
    EXPECT_STREQ("rest", it);
  }
  EXPECT_EQ("0x0202fde800000064", valueToStrep(RouteTarget(0x0202fde800000064)));
  for (const Kiv::String form : {"", "0x", "1:2", "0x012345678", "0x01234567 9abcdef0"}) {
    const char* it = form.data();
    RouteTarget target(7);
    EXPECT_THROW(sequenceToValue(it, form.data() + form.size(), &target), Kiv::RangeException);
    EXPECT_EQ(form.data(), it);
    EXPECT_EQ(RouteTarget(7), target);
  }
}

TEST(RouteTarget, OrderedAndHashedByTheNumber) {
  EXPECT_LT(RouteTarget(0x7fff'ffff'ffff'ffff), RouteTarget(0x8000'0000'0000'0000));
  EXPECT_EQ(Kiv::hashSingleAttr(9, 0x0002fde800000064), RouteTarget(0x0002fde800000064).hash(9));
  std::unordered_set<RouteTarget> set;
  for (U64 i = 0; i < 10; ++i) set.insert(RouteTarget(i % 5));
  EXPECT_EQ(5U, set.size());
}

}  // namespace
}  // namespace Routing::Bgp
