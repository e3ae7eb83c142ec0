#include "Dorn/MaybeU63.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Kiv/Exception.h"

namespace {

using Dorn::MaybeU63;

constexpr U64 largest = (U64{1} << 63) - 1;

TEST(MaybeU63, TopBitMeansUnspecified) {
  EXPECT_TRUE(MaybeU63().isUnspecified());
  EXPECT_EQ(MaybeU63().word(), 0x8000'0000'0000'0000u);
  EXPECT_TRUE(MaybeU63(~U64{0}).isUnspecified());
  EXPECT_FALSE(MaybeU63(0).isUnspecified());
  EXPECT_FALSE(MaybeU63(largest).isUnspecified());
}

TEST(MaybeU63, TextIsDecimalOrDash) {
  std::ostringstream os;
  os << std::hex << std::showbase << MaybeU63(255) << ' ' << MaybeU63(~U64{0});
  EXPECT_EQ(os.str(), "255 -");
  EXPECT_EQ(valueToStrep(MaybeU63(largest)), "9223372036854775807");
}

TEST(MaybeU63, ReaderLeavesTheRestOrEverything) {
  static constexpr struct {
    const char* text;
    const char* result;
  } rows[] = {
      {"0", "0+"},
      {"-", "-+"},
      {"-1", "-+1"},
      {"9223372036854775807,", "9223372036854775807+,"},
      {"9223372036854775808", "refused"},
      {"18446744073709551616", "refused"},
      {"", "refused"},
      {"x", "refused"},
      {" 1", "refused"},
  };
  for (const auto& [text, result] : rows) {
    const std::string held = text;
    const char* it = held.data();
    MaybeU63 value(77);
    std::string found;
    try {
      sequenceToValue(it, held.data() + held.size(), &value);
      found = valueToStrep(value) + "+" + it;
    } catch (const Kiv::RangeException&) {
      found = it == held.data() && value.word() == 77 ? "refused" : "refused, but changed";
    }
    EXPECT_EQ(found, result) << text;
  }
}

}  // namespace
