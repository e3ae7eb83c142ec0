#include "OvBgp/RouteTargetPrefix.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Kiv/Exception.h"

namespace Routing::Bgp {
namespace {

constexpr const char* lengthError = "RouteTargetPrefix::length < 0 or > 64 not allowed";

// The text of the Kiv::RangeException that `action` throws; empty if it throws nothing.
template <class Action>
Kiv::String rangeError(const Action& action) {
  try {
    action();
  } catch (const Kiv::RangeException& error) {
    return error.what();
  }
  return "";
}

RouteTargetPrefix masked(U64 bits, std::size_t length) {
  RouteTargetPrefix prefix(bits, 64);
  prefix.bitlenIs(length);
  return prefix;
}

TEST(RouteTargetPrefix, LengthMasksWhatItLeavesOut) {
  const struct {
    std::size_t length;
    U64 mask, bits;
    const char* text;
  } rows[] = {
      {0, 0, 0, "0/0"},
      {1, 0x8000'0000'0000'0000, 0, "0x0000000000000000/1"},
      {16, 0xffff'0000'0000'0000, 0x0102'0000'0000'0000, "0.0.0.0:0/16"},
      {48, 0xffff'ffff'ffff'0000, 0x0102'0304'0506'0000, "3.4.5.6:0/48"},
      {63, 0xffff'ffff'ffff'fffe, 0x0102'0304'0506'0708, "3.4.5.6:1800/63"},
      {64, 0xffff'ffff'ffff'ffff, 0x0102'0304'0506'0708, "3.4.5.6:1800/64"},
  };
  for (const auto& row : rows) {
    const RouteTargetPrefix prefix = masked(0x0102'0304'0506'0708, row.length);
    EXPECT_EQ(row.mask, prefix.mask());
    EXPECT_EQ(row.bits, prefix.prefixBits());
    EXPECT_EQ(row.length, prefix.bitlen());
    EXPECT_EQ(row.text, prefix.toStrep(false));
    std::ostringstream out;
    out << std::hex << prefix;
    EXPECT_EQ(row.text, out.str());
  }
  EXPECT_EQ("70000:1/64", RouteTargetPrefix(0x0202'0001'1170'0001, 64).toStrep(false));
  EXPECT_EQ("1.4464:1/64", RouteTargetPrefix(0x0202'0001'1170'0001, 64).toStrep(true));
  EXPECT_EQ("0/0", RouteTargetPrefix(0x0202'0001'1170'0001, 0).toStrep(true));
}

// Setting a greater length later does not restore bits that a smaller length has cleared.
TEST(RouteTargetPrefix, MaskedBitsAreGone) {
  RouteTargetPrefix prefix = masked(~U64{0}, 8);
  prefix.bitlenIs(64);
  EXPECT_EQ(0xff00'0000'0000'0000, prefix.prefixBits());
}

TEST(RouteTargetPrefix, LengthBeyondTheBitsIsStoredAndRefused) {
  for (const std::size_t length : {65U, 70U, 128U, 255U}) {
    RouteTargetPrefix prefix(0x0102'0304'0506'0708, 16);
    EXPECT_EQ(lengthError, rangeError([&] { prefix.bitlenIs(length); }));
    EXPECT_EQ(length, prefix.bitlen());
    EXPECT_EQ(0x0102'0304'0506'0708U, prefix.prefixBits());
    EXPECT_EQ(~U64{0}, prefix.mask());
    EXPECT_EQ("", rangeError([&] { prefix.bitlenIs(length); })) << "no change, no check";
    EXPECT_EQ(64, prefix.commonPrefixLen(prefix));
    EXPECT_EQ("3.4.5.6:1800/" + std::to_string(length), prefix.toStrep(false));
    EXPECT_EQ(lengthError,
              rangeError([&] { RouteTargetPrefix(0, static_cast<U8>(length)).bitlen(); }));
  }
}

TEST(RouteTargetPrefixDeathTest, LengthOf256IsAFault) {
  RouteTargetPrefix prefix;
  EXPECT_DEATH(prefix.bitlenIs(256), "0 == \\( bitlen >> 8 \\)");
}

TEST(RouteTargetPrefix, BitsCountFromTheMostSignificant) {
  const RouteTargetPrefix prefix(0x8000'0000'0000'0005, 64);
  for (U32 i = 0; i < 300; ++i) {
    EXPECT_EQ(i == 0 || i == 61 || i == 63, prefix.extractBit(i)) << i;
  }
  EXPECT_FALSE(RouteTargetPrefix(~U64{0}, 64).extractBit(~U32{0}));
}

TEST(RouteTargetPrefix, CommonLengthIsBoundedByBothLengths) {
  const struct {
    U64 a;
    U8 aLength;
    U64 b;
    U8 bLength;
    U8 common;
  } rows[] = {
      {0x0102'0000'0000'0000, 16, 0x0102'0000'0000'0000, 24, 16},
      {0x0102'0000'0000'0000, 16, 0x0103'0000'0000'0000, 16, 15},
      {0, 64, 0x8000'0000'0000'0000, 64, 0},
      {5, 64, 5, 64, 64},
      {4, 64, 5, 64, 63},
      {0, 0, ~U64{0}, 64, 0},
  };
  for (const auto& row : rows) {
    const RouteTargetPrefix a(row.a, row.aLength);
    const RouteTargetPrefix b(row.b, row.bLength);
    EXPECT_EQ(row.common, a.commonPrefixLen(b)) << a << ' ' << b;
    EXPECT_EQ(row.common, b.commonPrefixLen(a)) << a << ' ' << b;
  }
}

TEST(RouteTargetPrefix, OrderedByBitsThenLength) {
  const RouteTargetPrefix ascending[] = {
      {0, 8}, {0, 9}, {1, 0}, {0x7fff'ffff'ffff'ffff, 64}, {0x8000'0000'0000'0000, 1}};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      EXPECT_EQ(i < j, ascending[i] < ascending[j]) << i << ' ' << j;
      EXPECT_EQ(i == j, ascending[i] == ascending[j]) << i << ' ' << j;
    }
  }
  EXPECT_EQ(Kiv::hashSingleAttr(3, 0x1234), RouteTargetPrefix(0x1234, 64).hash(3));
}

TEST(RouteTargetPrefix, ValueFormIsReadBack) {
  const RouteTargetPrefix prefix(0x0202'fde8'0000'0000, 40);
  const Kiv::String form = valueToStrep(prefix);
  EXPECT_EQ(
      "Value('Routing::Bgp::RouteTargetPrefix', ** {'prefix': 0x0202fde800000000, 'length': 40})",
      form);
  EXPECT_EQ(prefix, RouteTargetPrefix(form));
  const Kiv::String more = form + form;
  const char* it = more.data();
  RouteTargetPrefix read;
  sequenceToValue(it, more.data() + more.size(), &read);
  EXPECT_EQ(prefix, read);
  EXPECT_EQ(more.data() + form.size(), it);
  EXPECT_EQ("end of text expected", rangeError([&] { RouteTargetPrefix{more}; }));
}

TEST(RouteTargetPrefix, ValueFormErrorsSayWhatIsWrong) {
  const Kiv::String begin = "Value('Routing::Bgp::RouteTargetPrefix', ** {'prefix': ";
  const struct {
    Kiv::String form;
    const char* error;
  } rows[] = {
      {begin + "0x0000000000000000, 'length': 65})", lengthError},
      {begin + "0x0000000000000000, 'length': 256})", lengthError},
      {begin + "0x0000000000000000, 'length': 4294967360})", lengthError},
      {begin + "0x0000000000000000, 'length': -1})",
       "attribute \"length\": unsigned number expected"},
      {begin + "65000:1, 'length': 65})",
       "attribute \"prefix\": 0x and 16 hexadecimal digits expected"},
      {begin + "0x0000000000000000, 'length': 64}", "\"})\" expected"},
      {"Value('Routing::Bgp::RouteTarget', ** {})",
       "\"Value('Routing::Bgp::RouteTargetPrefix', ** {\" expected"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.error, rangeError([&] { RouteTargetPrefix{row.form}; }));
    const char* it = row.form.data();
    RouteTargetPrefix target(7, 7);
    EXPECT_NE("", rangeError([&] { sequenceToValue(it, it + row.form.size(), &target); }));
    EXPECT_EQ(row.form.data(), it);
    EXPECT_EQ(RouteTargetPrefix(7, 7), target);
  }
}

}  // namespace
}  // namespace Routing::Bgp
