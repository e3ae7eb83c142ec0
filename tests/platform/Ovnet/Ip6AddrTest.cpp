#include "Ovnet/Ip6Addr.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <unordered_set>

#include "Kiv/Exception.h"
#include "tests/Texts.h"

namespace {

using Ovnet::Ip6Addr;

TEST(Ip6Addr, ReadsEveryFormAndWritesTheCanonicalOne) {
  const struct {
    const char* read;
    const char* written;
  } cases[] = {
      {"::", "::"},
      {"::1", "::1"},
      {"1::", "1::"},
      {"2001:DB8:0:0:8:800:200C:417A", "2001:db8::8:800:200c:417a"},
      {"2001:0db8:0000:0000:0000:0000:0000:0001", "2001:db8::1"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},  // a single group is not shortened
      {"2001:db8::1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},   // but is read in shortened form
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},           // the longest run is shortened
      {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},     // the first of two equal runs
      {"0:0:1:2:3:4:0:0", "::1:2:3:4:0:0"},
      {"1:2:3:4:5:6:7::", "1:2:3:4:5:6:7:0"},
      {"::2:3:4:5:6:7:8", "0:2:3:4:5:6:7:8"},
      {"0:0:0:0:0:ffff:192.0.2.1", "::ffff:192.0.2.1"},
      {"::ffff:0:0", "::ffff:0.0.0.0"},
      {"::FFFF:255.255.255.255", "::ffff:255.255.255.255"},
      {"::192.0.2.1", "::c000:201"},  // only IPv4-mapped addresses are written with dots
      {"64:ff9b::192.0.2.33", "64:ff9b::c000:221"},
      {"1:2:3:4:5:6:1.2.3.4", "1:2:3:4:5:6:102:304"},
      {"::ffff:0:1.2.3.4", "::ffff:0:102:304"},
      {"f:f0:f00:f000:1:10:100:1000", "f:f0:f00:f000:1:10:100:1000"},
  };
  for (const auto& c : cases) {
    const Ip6Addr addr{std::string_view(c.read)};
    EXPECT_EQ(addr.stringValue(), c.written) << c.read;
    EXPECT_EQ(Ip6Addr(addr.stringValue()), addr) << c.read;
  }
}

TEST(Ip6Addr, RefusesAllElse) {
  for (const std::string& text :
       Texts::split("|:|:::|1|1:2:3:4:5:6:7|1:2:3:4:5:6:7:8:9|1:2:3:4:5:6:7:8::|::1::2|"
                    "1:2:3:4::5:6:7:8|12345::|g::|::1 | ::1|::1%eth0|::1/64|[::1]|1:2:3:4:5:6:7:|"
                    ":1:2:3:4:5:6:7|1:::2|1.2.3.4|::1.2.3|::1.2.3.4.5|::1.2.3.256|::1.2.3.04|"
                    "::1.2..4|::1.2.3.4:5|1.2.3.4::|1:2:3:4:5:6:7:1.2.3.4|::.1.2.3|::1.2.3.|::-1|"
                    "::0x1")) {
    EXPECT_THROW(Ip6Addr{std::string_view(text)}, Kiv::RangeException) << text;
    struct in6_addr ignored;
    EXPECT_EQ(inet_pton(AF_INET6, text.c_str(), &ignored), 0) << text;
  }
  EXPECT_THROW(Ip6Addr(std::string_view("::1\0", 4)), Kiv::RangeException);
}

// A random address. Each group is zero, below 256 or any number, with equal probability, so that
// runs of zeros of every length occur; one address in eight begins like an IPv4-mapped one.
Ip6Addr randomAddr(std::mt19937& random) {
  Ip6Addr::Octets octets{};
  for (std::size_t i = 0; i < octets.size(); i += 2) {
    const auto kind = random() % 3;
    if (kind == 2) octets[i] = static_cast<U8>(random());
    if (kind != 0) octets[i + 1] = static_cast<U8>(random());
  }
  if (random() % 8 == 0) {
    std::fill_n(octets.begin(), 10, U8{0});
    octets[10] = octets[11] = 0xff;
  }
  return Ip6Addr(octets);
}

TEST(Ip6Addr, AgreesWithTheSystemOnRandomAddresses) {
  std::mt19937 random(1);
  for (int i = 0; i < 50000; ++i) {
    const Ip6Addr addr = randomAddr(random);
    // The C library also writes IPv4-compatible addresses (96 bits of zeros) with dots; RFC 5952
    // recommends that only for prefixes known to contain IPv4 addresses.
    const bool isCompatible = std::all_of(addr.octets().begin(), addr.octets().begin() + 12,
                                          [](U8 octet) { return octet == 0; });
    char text[INET6_ADDRSTRLEN];
    ASSERT_NE(inet_ntop(AF_INET6, addr.octets().data(), text, sizeof text), nullptr);
    ASSERT_EQ(Ip6Addr(std::string_view(text)), addr);
    if (!isCompatible) {
      ASSERT_EQ(addr.stringValue(), text);
    }
  }
}

// Random texts that are nearly addresses. The C library and this class must accept the same ones.
TEST(Ip6Addr, AgreesWithTheSystemOnRandomTexts) {
  std::mt19937 random(2);
  const std::string_view pieces[] = {"0", "1",  "ab", "FFFF", ":",    ":",
                                     ":", "::", ".",  "255",  "12345"};
  int taken = 0;
  for (int i = 0; i < 200000; ++i) {
    std::string text;
    for (auto n = random() % 16; n != 0; --n) text += pieces[random() % std::size(pieces)];
    Ip6Addr::Octets octets;
    const bool isTaken = inet_pton(AF_INET6, text.c_str(), octets.data()) == 1;
    taken += isTaken;
    if (isTaken) {
      ASSERT_EQ(Ip6Addr(std::string_view(text)), Ip6Addr(octets)) << text;
    } else {
      ASSERT_THROW(Ip6Addr(std::string_view(text)), Kiv::RangeException) << text;
    }
  }
  EXPECT_GT(taken, 1000);
}

TEST(Ip6Addr, IsAnOrderedHashableConstant) {
  constexpr Ip6Addr low(Ip6Addr::Octets{0x20, 0x01});
  constexpr Ip6Addr high(Ip6Addr::Octets{0x20, 0x01, 0x80});
  static_assert(low < high && low != high && Ip6Addr() < low && low.group(0) == 0x2001);
  EXPECT_LT(Ip6Addr(std::string_view("::ff")), Ip6Addr(std::string_view("0:0:1::")));
  const std::unordered_set<Ip6Addr> set{low, high, Ip6Addr(std::string_view("2001::"))};
  EXPECT_EQ(set.size(), 2U);

  std::ostringstream out;
  out << std::hex << low << " " << high;
  EXPECT_EQ(out.str(), "2001:: 2001:8000::");
}

TEST(Ip6Addr, PrintsIntoABuffer) {
  OvFmt::StackBackedBuffer<4> buffer;
  buffer.append("to ");
  Ip6Addr(std::string_view("1111:2222:3333:4444:5555:6666:7777:8888")).printToBuffer(buffer);
  Ip6Addr(std::string_view("::ffff:10.20.30.40")).printToBuffer(buffer);
  EXPECT_EQ(buffer.view(), "to 1111:2222:3333:4444:5555:6666:7777:8888::ffff:10.20.30.40");
}

}  // namespace
