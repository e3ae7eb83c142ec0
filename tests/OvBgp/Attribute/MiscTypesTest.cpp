#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "Kiv/Exception.h"
#include "OvBgp/OvBgpCommunityPacketTypes.h"
#include "OvBgp/OvBgpMiscTypes.h"

namespace {

using Kiv::RangeException;
using Routing::Bgp::BgpDenseU32Attr;
using Routing::Bgp::BgpExtCommPktSubtype;
using Routing::Bgp::BgpMaybeU63;

constexpr U64 unspecifiedWord = U64{1} << 63;

// A kind whose bounds exclude 0 and include the largest number of 63 bits.
class Wide : public BgpMaybeU63 {
 public:
  explicit Wide(U64 word) : Wide(word, Unchecked{}) { checkValue(); }
  U64 min() const override { return 10; }
  U64 max() const override { return unspecifiedWord - 1; }
  U64 mappedUnspecifiedValue() const override { return 42; }

 protected:
  Wide(U64 word, Unchecked unchecked) : BgpMaybeU63(word, unchecked) {}
};

// A kind derived from another kind, with a smaller lower bound. The bounds of its base must play no
// part, not even while the base is constructed.
class Wider final : public Wide {
 public:
  explicit Wider(U64 word) : Wide(word, Unchecked{}) { checkValue(); }
  U64 min() const override { return 0; }
};

template <class Exception = RangeException>
std::string errorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const Exception& error) {
    return error.what();
  }
  return "";
}

TEST(BgpMaybeU63, BoundsAreThoseOfTheMostDerivedKind) {
  const char* const text = "value < min or > max not allowed";
  EXPECT_EQ(static_cast<U64>(BgpExtCommPktSubtype(255)), 255u);
  EXPECT_EQ(static_cast<U64>(Wide(unspecifiedWord - 1)), unspecifiedWord - 1);
  EXPECT_EQ(static_cast<U64>(Wider(0)), 0u);
  EXPECT_EQ(errorOf([] { BgpExtCommPktSubtype(256); }), text);
  EXPECT_EQ(errorOf([] { Wide(9); }), text);
  for (U64 word : {U64{0}, U64{1}, unspecifiedWord - 1}) {
    EXPECT_EQ(errorOf([word] { BgpMaybeU63{word}; }), text);
  }
  EXPECT_TRUE(BgpMaybeU63(unspecifiedWord | 5).isUnspecified());
}

TEST(BgpMaybeU63, RefusedValueLeavesUnspecified) {
  BgpExtCommPktSubtype subtype(7);
  EXPECT_THROW(subtype.valueIs(256), RangeException);
  EXPECT_EQ(subtype.word(), unspecifiedWord);
  subtype.valueIs(0);
  EXPECT_EQ(subtype.toStrep(), "0");
  subtype.valueIs(~U64{0});
  EXPECT_EQ(subtype.toStrep(), "-");
}

TEST(BgpMaybeU63, UnspecifiedIsMappedByKind) {
  EXPECT_EQ(BgpExtCommPktSubtype().valueWithUnspecifiedMapped(), 0u);
  EXPECT_EQ(Wide(unspecifiedWord).valueWithUnspecifiedMapped(), 42u);
  EXPECT_EQ(Wide(11).valueWithUnspecifiedMapped(), 11u);
}

// Compares pairs of values of several kinds by all operators. An operator that used the conversion
// to U64 would abort on the unspecified values.
TEST(BgpMaybeU63, OrdersUnspecifiedFirstAcrossKinds) {
  const auto check = [](const auto& a, const auto& b, int order) {
    EXPECT_EQ(a == b, order == 0);
    EXPECT_EQ(a != b, order != 0);
    EXPECT_EQ(a < b, order < 0);
    EXPECT_EQ(a > b, order > 0);
    EXPECT_EQ(a <= b, order <= 0);
    EXPECT_EQ(a >= b, order >= 0);
  };
  check(BgpExtCommPktSubtype(), Wide(unspecifiedWord), 0);
  check(BgpExtCommPktSubtype(unspecifiedWord | 1), BgpExtCommPktSubtype(unspecifiedWord | 2), 0);
  check(BgpMaybeU63(), Wider(~U64{0}), 0);
  check(BgpExtCommPktSubtype(), BgpExtCommPktSubtype(0), -1);
  check(BgpExtCommPktSubtype(0), Wide(~U64{0}), 1);
  check(Wide(10), BgpExtCommPktSubtype(10), 0);
  check(BgpExtCommPktSubtype(255), Wide(256), -1);
  check(Wide(unspecifiedWord - 1), Wider(0), 1);
}

TEST(BgpMaybeU63DeathTest, ConversionOfUnspecifiedAborts) {
  const auto died =
      "!isUnspecified\\(\\).*Caller must check isUnspecified\\(\\) before getting "
      "value\\(\\).*OvBgp/OvBgpMiscTypes";
  EXPECT_DEATH(static_cast<void>(static_cast<U64>(BgpExtCommPktSubtype())), died);
  EXPECT_DEATH(static_cast<void>(BgpExtCommPktSubtype().value()), died);
  EXPECT_EQ(200U, BgpExtCommPktSubtype(200).value());
}

TEST(BgpMaybeU63, TextIsThatOfThePlatformType) {
  std::ostringstream os;
  os << std::hex << BgpExtCommPktSubtype(200) << BgpExtCommPktSubtype();
  EXPECT_EQ(os.str(), "200-");
  EXPECT_EQ(valueToStrep(BgpExtCommPktSubtype(16)), "16");
}

TEST(BgpMaybeU63, ReaderKeepsTheBounds) {
  const auto read = [](const std::string& text, BgpExtCommPktSubtype& target) {
    const char* it = text.data();
    const std::string error =
        errorOf([&] { sequenceToValue(it, text.data() + text.size(), &target); });
    return error.empty() ? std::string("+") + it : (it == text.data() ? error : "moved");
  };
  BgpExtCommPktSubtype subtype(3);
  EXPECT_EQ(read("", subtype), "unsigned number expected");
  EXPECT_EQ(subtype, BgpExtCommPktSubtype(3));
  EXPECT_EQ(read("255;", subtype), "+;");
  EXPECT_EQ(subtype, BgpExtCommPktSubtype(255));
  EXPECT_EQ(read("256", subtype), "value < min or > max not allowed");
  EXPECT_TRUE(subtype.isUnspecified());
  subtype.valueIs(4);
  EXPECT_EQ(read("-", subtype), "+");
  EXPECT_TRUE(subtype.isUnspecified());
}

static_assert(sizeof(BgpDenseU32Attr) == 4 && std::is_trivially_copyable_v<BgpDenseU32Attr>);

TEST(BgpDenseU32Attr, ViewsAliasOneWord) {
  BgpDenseU32Attr attr;
  attr.valueU16Is(1, 0xabcd);
  EXPECT_EQ(attr.value(), 0xabcd0000u);
  EXPECT_EQ(attr.valueU8(3), 0xab);
  EXPECT_FALSE(attr.valueBool(15));
  attr.valueBoolIs(15, true);
  attr.valueBoolIs(0, true);
  EXPECT_EQ(attr.value(), 0xabcd8001u);
  EXPECT_TRUE(attr.valueBool(15));
  EXPECT_FALSE(attr.valueBool(14));
  attr.valueU8Is(1, 0x7f);
  EXPECT_EQ(attr.valueU16(0), 0x7f01);
  attr.valueU8Is(3, 0xff);
  EXPECT_EQ(attr.valueU16(1), 0xffcd);
  attr.valueBoolIs(0, false);
  attr.valueU16Is(1, 0);
  EXPECT_EQ(attr.value(), 0x7f00u);
}

TEST(BgpDenseU32Attr, RefusesIndexesOutOfRange) {
  BgpDenseU32Attr attr(0x12345678);
  const std::vector<std::pair<std::string, std::function<void()>>> rows{
      {"BgpDenseU32Attr::valueBool", [&] { attr.valueBool(16); }},
      {"BgpDenseU32Attr::valueBool", [&] { attr.valueBool(255); }},
      {"BgpDenseU32Attr::valueBoolIs", [&] { attr.valueBoolIs(16, true); }},
      {"BgpDenseU32Attr::valueU8", [&] { attr.valueU8(4); }},
      {"BgpDenseU32Attr::valueU8Is", [&] { attr.valueU8Is(4, 9); }},
      {"BgpDenseU32Attr::valueU16", [&] { attr.valueU16(2); }},
      {"BgpDenseU32Attr::valueU16Is", [&] { attr.valueU16Is(2, 9); }},
  };
  for (const auto& [text, operation] : rows) EXPECT_EQ(errorOf(operation), text);
  EXPECT_EQ(attr.value(), 0x12345678u);
}

TEST(BgpDenseU32Attr, ViewsCannotBeDeleted) {
  BgpDenseU32Attr attr(5);
  const std::vector<std::pair<std::string, std::function<void()>>> rows{
      {"BgpDenseU32Attr::valueBoolDel", [&] { attr.valueBoolDel(0); }},
      {"BgpDenseU32Attr::valueU8Del", [&] { attr.valueU8Del(200); }},
      {"BgpDenseU32Attr::valueU16Del", [&] { attr.valueU16Del(1); }},
  };
  for (const auto& [text, operation] : rows) {
    EXPECT_EQ(errorOf<Kiv::NonDeletableAttributeException>(operation), text);
  }
  EXPECT_EQ(attr.value(), 5u);
}

TEST(BgpDenseU32Attr, ReadsItsTextBack) {
  for (U32 word : {0u, 123u, std::numeric_limits<U32>::max()}) {
    EXPECT_EQ(BgpDenseU32Attr(valueToStrep(BgpDenseU32Attr(word))).value(), word);
  }
  EXPECT_EQ(BgpDenseU32Attr("value=4294967295").value(), 0xffffffffu);
  for (const char* text : {"", "value=", "value=4294967296", "value=-1", "value=1 ", "1"}) {
    EXPECT_THROW(BgpDenseU32Attr{Kiv::String(text)}, RangeException) << text;
  }
  std::ostringstream os;
  os << std::hex << BgpDenseU32Attr(0xabcd0000);
  EXPECT_EQ(os.str(), "2882338816");
}

}  // namespace
