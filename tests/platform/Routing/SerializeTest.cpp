#include "Routing/Bgp/Serialize.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Routing::Bgp::Serialize;

TEST(Serialize, WritesBigEndian) {
  Serialize bytes;
  bytes.addU8(0x01);
  bytes.addU16hton(0x0203);
  bytes.addU32hton(0x04050607);
  bytes.addU64hton(0x08090a0b0c0d0e0f);
  bytes.addIpv6Addr(Ovnet::Ip6Addr(std::string_view("1011:1213:1415:1617:1819:1a1b:1c1d:1e1f")));
  bytes.addU32shton(std::vector<U32>{0x20212223, 0x24252627});
  bytes.addOctets(std::vector<U8>{0x28, 0x29});
  bytes.addOctets({});
  std::string expected;
  for (char octet = 1; octet <= 0x29; ++octet) expected += octet;
  EXPECT_EQ(bytes.serializedString(0), expected);
  EXPECT_EQ(bytes.serializedString(39), "\x28\x29");
  EXPECT_EQ(bytes.serializedString(bytes.size()), "");
}

TEST(Serialize, StaysInPlaceForAMessage) {
  Serialize bytes;
  for (U32 i = 0; i < Serialize::inPlaceSize / 4; ++i) bytes.addU32hton(i);
  EXPECT_EQ(bytes.size(), 4096U);
  EXPECT_EQ(bytes.capacity(), 4096U);
}

// Every add function, at every distance from the end of the storage inside the object.
TEST(Serialize, KeepsItsBytesAsItGrows) {
  for (U32 before = 4096 - 17; before <= 4096; ++before) {
    for (const U32 step : {1U, 2U, 4U, 8U, 16U}) {
      Serialize bytes;
      bytes.addOctets(std::vector<U8>(before, 0xaa));
      if (step == 1) bytes.addU8(0x11);
      if (step == 2) bytes.addU16hton(0x1111);
      if (step == 4) bytes.addU32hton(0x11111111);
      if (step == 8) bytes.addU64hton(0x1111111111111111);
      if (step == 16) bytes.addOctets(std::vector<U8>(16, 0x11));
      ASSERT_EQ(bytes.serializedString(0), std::string(before, '\xaa') + std::string(step, '\x11'));
      ASSERT_EQ(bytes.capacity(), before + step <= 4096 ? 4096U : 8192U);
    }
  }
  Serialize bytes;
  std::string expected;
  for (U32 i = 0; i < 100000; ++i) {
    bytes.addU16hton(static_cast<U16>(i));
    expected += static_cast<char>(i >> 8);
    expected += static_cast<char>(i);
  }
  EXPECT_EQ(bytes.serializedString(0), expected);
}

// A single addition that needs more than twice the capacity.
TEST(Serialize, HasRoomForAllThatItHolds) {
  Serialize bytes;
  bytes.addOctets(std::vector<U8>(4000, 0xaa));
  bytes.addOctets(std::vector<U8>(8500, 0x11));
  EXPECT_EQ(bytes.capacity(), 12500U);
  EXPECT_EQ(bytes.serializedString(0), std::string(4000, '\xaa') + std::string(8500, '\x11'));
}

TEST(Serialize, GrowsToExactlyWhatIsAskedFor) {
  Serialize bytes;
  bytes.addU16hton(0x4142);
  bytes.growBuffer(4096);
  EXPECT_EQ(bytes.capacity(), 4096U);
  bytes.growBuffer(5000);
  EXPECT_EQ(bytes.capacity(), 5000U);
  bytes.growBuffer(70000);
  EXPECT_EQ(bytes.capacity(), 70000U);
  bytes.growBuffer(10);
  EXPECT_EQ(bytes.capacity(), 70000U);
  EXPECT_EQ(bytes.serializedString(0), "AB");
}

TEST(SerializeDeathTest, AbortsOnAStartBehindTheEnd) {
  Serialize bytes;
  bytes.addU8(1);
  EXPECT_DEATH(bytes.serializedString(2),
               "\"start <= size\\(\\)\" failed in Routing/Bgp/Serialize");
}

}  // namespace
