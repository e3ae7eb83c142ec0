#include "Kiv/Enum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <limits>
#include <sstream>
#include <vector>

#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"

namespace {

// The special cases of a declaration: rows out of order, names with a common beginning, members and
// markers below and above 255, and both ends of the range.
#define ENUM_ROWS(enumMember, enumMarker) \
  enumMember(toneHigh, 200)               \
  enumMember(tone, 0)                     \
  enumMarker(toneWild, 7)                 \
  enumMember(toneHighest, 255)            \
  enumMember(toneFar, 0xffffff01)         \
  enumMarker(toneUnknown, 65536)          \
  enumMember(toneLast, 0xffffffff)        \
  enumMember(tone64, 64)
KIV_ENUM(Tone, ENUM_ROWS)
#undef ENUM_ROWS
KIV_ENUM_INSTANCE_BY_VALUE(Tone, toneOfValue)
KIV_ENUM_INSTANCE_BY_POSITION(Tone, toneAt)

#define ENUM_ROWS(enumMember, enumMarker) enumMarker(emptyUnknown, 256)
KIV_ENUM(Empty, ENUM_ROWS)
#undef ENUM_ROWS

using Kiv::operator<<;  // NOLINT(misc-unused-using-decls): found by the tests' printing
using Kiv::RangeException;

static_assert(Kiv::RegisteredEnum<Tone> && !Kiv::RegisteredEnum<Kiv::EnumInfo>);
static_assert(Kiv::enumIsValid(Tone::toneHighest) && !Kiv::enumIsValid(Tone::toneWild),
              "validity can be asked for at compile time");

// Reads a Tone from `text`. Returns the name of the member and the unread rest, or "refused" if the
// reader threw and changed nothing.
std::string readTone(const std::string& text) {
  const char* it = text.data();
  Tone tone = Tone::toneWild;
  try {
    Kiv::sequenceToValue(it, text.data() + text.size(), &tone);
  } catch (const RangeException&) {
    return it == text.data() && tone == Tone::toneWild ? "refused" : "refused, but changed";
  }
  return Kiv::stringValue(tone) + "+" + it;
}

TEST(Enum, OnlyMembersAreValid) {
  const std::vector<U32> valid{0, 64, 200, 255, 0xffffff01, 0xffffffff};
  for (U32 number :
       {0u,   1u,   7u,   63u,  64u,    65u,    128u,   200u,        254u,        255u,
        256u, 264u, 320u, 456u, 65535u, 65536u, 65600u, 0xffffff00u, 0xffffff01u, 0xffffffffu}) {
    const bool expected = std::ranges::count(valid, number) != 0;
    EXPECT_EQ(Kiv::enumIsValid(Tone{number}), expected) << number;
  }
  for (U32 number : {0u, 255u, 256u}) EXPECT_FALSE(Kiv::enumIsValid(Empty{number}));
}

TEST(Enum, NumbersWithoutNamePrintAsSuch) {
  std::ostringstream os;
  os << Tone::toneUnknown << ' ' << Tone{8} << ' ' << std::setw(6) << Tone::tone;
  EXPECT_EQ(os.str(), "toneUnknown Tone(8)   tone");
  EXPECT_EQ(Kiv::valueToStrep(Tone{0xfffffffe}), "Tone(4294967294)");
  EXPECT_EQ(Kiv::enumName(Tone::tone64), "tone64");
  EXPECT_EQ(Kiv::enumName(Tone{8}), "");
}

TEST(Enum, ReaderTakesTheLongestIdentifier) {
  EXPECT_EQ(readTone("tone"), "tone+");
  EXPECT_EQ(readTone("toneHigh,tone"), "toneHigh+,tone");
  EXPECT_EQ(readTone("toneHighest"), "toneHighest+");
  EXPECT_EQ(readTone("tone64 "), "tone64+ ");
  EXPECT_EQ(readTone("toneUnknown}"), "toneUnknown+}");
  for (const char* text : {"", " tone", "ton", "toneHigher", "tone_", "64", "Tone(8)", "TONE"}) {
    EXPECT_EQ(readTone(text), "refused") << text;
  }
}

TEST(Enum, InstancesByValuePositionAndName) {
  EXPECT_EQ(toneOfValue(65536), Tone::toneUnknown);
  EXPECT_EQ(toneOfValue("toneFar"), Tone::toneFar);
  EXPECT_EQ(toneAt("toneWild"), Tone::toneWild);
  const std::vector<Tone> declared{Tone::toneHigh,    Tone::tone,    Tone::toneWild,
                                   Tone::toneHighest, Tone::toneFar, Tone::toneUnknown,
                                   Tone::toneLast,    Tone::tone64};
  for (U32 i = 0; i < declared.size(); ++i) EXPECT_EQ(toneAt(i), declared[i]);

  EXPECT_THROW(toneOfValue(1), RangeException);
  EXPECT_THROW(toneAt(8), RangeException);
  EXPECT_THROW(toneAt(0xffffffff), RangeException);
  EXPECT_THROW(toneAt("tone "), RangeException);
  EXPECT_THROW(toneOfValue(Kiv::String("tone\0", 5)), RangeException);
  EXPECT_THROW(toneOfValue(""), RangeException);
}

TEST(Enum, ExceptionSaysWhatIsMissingButNotAtAnyLength) {
  try {
    toneOfValue(Kiv::String(1'000'000, 'x'));
    FAIL();
  } catch (const RangeException& error) {
    EXPECT_EQ(std::string(error.what()).find("Tone: no member named \"xxx"), 0u);
    EXPECT_LT(std::string(error.what()).size(), 200u);
  }
}

// A number with more than 32 bits must not be found as the member with the same low half.
TEST(EnumInfo, LooksUpNumbersOfAnyWidth) {
  const Kiv::EnumInfo& info = Kiv::enumInfo<Tone>;
  ASSERT_NE(info.findValue(0xffffffff), nullptr);
  EXPECT_EQ(info.findValue(U64{1} << 32), nullptr);
  EXPECT_EQ(info.findValue((U64{1} << 32) + 64), nullptr);
  EXPECT_EQ(info.findValue(std::numeric_limits<U64>::max()), nullptr);

  const Kiv::EnumInfo::Member member = info.memberAt(2);
  EXPECT_EQ(member.enumeration, &info);
  EXPECT_EQ(member.name, "toneWild");
  EXPECT_EQ(member.value, 7u);
  EXPECT_FALSE(member.valid);
}

TEST(EnumRegistry, HoldsModulesAsLongAsTheyLive) {
  EXPECT_EQ(Kiv::EnumRegistry::findEnum("Tone"), nullptr);
  {
    const Kiv::EnumModule late("ZTest", Kiv::enumInfosOf<Kiv::EnumList<Tone, Empty>>);
    const Kiv::EnumModule early("ATest", {});
    EXPECT_EQ(Kiv::EnumRegistry::findModule("ZTest"), &late);
    EXPECT_EQ(Kiv::EnumRegistry::findEnum("Empty"), &Kiv::enumInfo<Empty>);
    ASSERT_EQ(late.enums().size(), 2u);
    EXPECT_EQ(late.enums()[0]->name(), "Tone");

    const auto modules = Kiv::EnumRegistry::modules();
    const auto earlyAt = std::ranges::find(modules, &early);
    ASSERT_NE(earlyAt, modules.end());
    EXPECT_NE(std::find(earlyAt, modules.end(), &late), modules.end()) << "not in name order";
  }
  EXPECT_EQ(Kiv::EnumRegistry::findEnum("Tone"), nullptr);
  EXPECT_EQ(Kiv::EnumRegistry::findModule("ATest"), nullptr);
}

}  // namespace
