#include "Kiv/FlagSet.h"

#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>

#include "Kiv/Exception.h"

namespace {

#define FLAG_ROWS(flagRow)              \
  flagRow(plain, plainIs, 0x01)         \
  flagRow(json, jsonIs, 0x08)           \
  flagRow(jsonShort, jsonShortIs, 0x02) \
  flagRow(weighted, weightedIs, 0x20)

class Strict : public Kiv::FlagSet<Strict> {
 public:
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Test::Strict", FLAG_ROWS)
};

class Lenient : public Kiv::FlagSet<Lenient, Kiv::UnnamedFlags::ignore> {
 public:
  using FlagSet::FlagSet;
  KIV_FLAG_SET_BODY("Test::Lenient", FLAG_ROWS)
};
#undef FLAG_ROWS

static_assert(sizeof(Strict) == 1 && std::is_trivially_copyable_v<Strict>);
static_assert(Strict(0x0b).jsonShort() && !Strict(0x0b).weighted());

constexpr U8 namedBits = 0x2b;

TEST(FlagSet, RefusesOrDropsBitsWithoutName) {
  for (unsigned octet = 0; octet < 256; ++octet) {
    const U8 bits = static_cast<U8>(octet);
    EXPECT_EQ(Lenient(bits).bits(), bits & namedBits);
    if ((bits & ~namedBits) == 0) {
      EXPECT_EQ(Strict(bits).bits(), bits);
    } else {
      EXPECT_THROW(Strict{bits}, Kiv::RangeException) << octet;
    }
  }
}

TEST(FlagSet, AccessorsTouchTheirOwnBit) {
  Strict set;
  EXPECT_EQ(set.bits(), 0);
  set.jsonIs(true);
  set.weightedIs(true);
  set.weightedIs(true);
  EXPECT_EQ(set, Strict(0x28));
  EXPECT_TRUE(set.json() && set.weighted() && !set.plain() && !set.jsonShort());
  set.jsonIs(false);
  set.plainIs(false);
  EXPECT_EQ(set, Strict(0x20));
}

TEST(FlagSet, TextGivesEveryFlagInRowOrder) {
  EXPECT_EQ(valueToStrep(Strict(0x28)),
            "Value('Test::Strict', ** {'plain': False, 'json': True, 'jsonShort': False, "
            "'weighted': True})");
  std::ostringstream os;
  os << Lenient();
  EXPECT_EQ(os.str(),
            "Value('Test::Lenient', ** {'plain': False, 'json': False, 'jsonShort': False, "
            "'weighted': False})");
}

TEST(FlagSet, ReadsBackEveryTextAndLeavesTheRest) {
  for (unsigned octet = 0; octet < 256; ++octet) {
    const U8 bits = static_cast<U8>(octet & namedBits);
    const Kiv::String text = valueToStrep(Strict(bits));
    EXPECT_EQ(Strict(text).bits(), bits);

    const Kiv::String longer = text + "}";
    const char* it = longer.data();
    Strict set;
    sequenceToValue(it, longer.data() + longer.size(), &set);
    EXPECT_EQ(set.bits(), bits);
    EXPECT_STREQ(it, "}");
  }
}

TEST(FlagSet, RefusesAnyOtherText) {
  const Kiv::String good = valueToStrep(Strict(0x28));
  for (std::size_t cut = 0; cut < good.size(); ++cut) {
    const Kiv::String text = good.substr(0, cut);
    EXPECT_THROW(Strict{text}, Kiv::RangeException) << text;

    const char* it = text.data();
    Strict set(0x01);
    EXPECT_THROW(sequenceToValue(it, text.data() + text.size(), &set), Kiv::RangeException);
    EXPECT_EQ(it, text.data());
    EXPECT_EQ(set, Strict(0x01));
  }
  EXPECT_THROW(Strict(good + " "), Kiv::RangeException);
  EXPECT_THROW(Strict(valueToStrep(Lenient(0x28))), Kiv::RangeException) << "another set's text";
}

}  // namespace
