#include "OvBgp/ExtCommIp6.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <iomanip>
#include <set>
#include <sstream>
#include <vector>

#include "Kiv/Exception.h"

namespace Routing::Bgp {
namespace {

using StrepFormat = ExtCommIp6::StrepFormat;

Ovnet::Ip6Addr ip6(const char* text) { return Ovnet::Ip6Addr(std::string_view(text)); }

ExtCommIp6Content content(U8 type, U8 subtype, const char* addr, U16 localAdmin) {
  return {type, subtype, ip6(addr), localAdmin};
}

template <class Streamed>
Kiv::String streamed(const Streamed& value) {
  std::ostringstream out;
  out << std::hex << std::showbase << std::setw(100) << std::setfill('*') << value;
  EXPECT_EQ(0, out.width()) << "as after every formatted output";
  EXPECT_EQ('*', out.fill());
  return out.str();
}

// The hash values are a contract. They were computed by an independent implementation of the
// one-at-a-time hash.
TEST(ExtCommIp6Content, HashIsOneAtATimeOverTheOctets) {
  const struct {
    ExtCommIp6Content content;
    U32 hash;
  } rows[] = {
      {content(0, 0, "::", 0), 0},
      {content(0, 2, "2001:db8::1", 10), 0x2242b8f2},
      {content(0, 2, "2001:db8::1", 11), 0x6466bc35},
      {content(0, 2, "2001:db8::1", 2560), 0xfa8ed957},
      {content(0x40, 11, "fe80::1:2:3:4", 0x1234), 0x3d04eb56},
      {content(255, 254, "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", 65535), 0x01a98e38},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.hash, row.content.hash()) << row.content;
    const auto object = extCommIp6Factory(extCommClassificationUnSpecified, row.content);
    EXPECT_EQ(row.hash, object->hash());
    EXPECT_EQ(row.content.probeHash(), object->probeHash());
  }
}

// Contents that differ in one or two bits, or only in the local administrator, must hardly collide:
// routers number their communities in sequence.
TEST(ExtCommIp6Content, ProbeHashSpreadsNeighbours) {
  std::set<U32> hashes;
  std::set<ExtCommIp6Content> contents;
  std::array<U8, sizeof(ExtCommIp6Content)> octets{};
  const auto add = [&] {
    const auto content = std::bit_cast<ExtCommIp6Content>(octets);
    hashes.insert(content.probeHash());
    contents.insert(content);
  };
  for (std::size_t i = 0; i < 8 * octets.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      octets = {};
      octets[i / 8] = static_cast<U8>(octets[i / 8] ^ 1U << i % 8);
      octets[j / 8] = static_cast<U8>(octets[j / 8] ^ 1U << j % 8);
      add();
    }
  }
  octets = {};
  for (int i = 0; i < 65536; ++i) {
    octets[18] = static_cast<U8>(i);
    octets[19] = static_cast<U8>(i >> 8);
    add();
  }
  // With most keys, at most one pair collides; with a few unlucky keys, dozens do. The test draws a
  // new key in each run, so it allows 0.5 %.
  EXPECT_GT(hashes.size() + contents.size() / 200, contents.size());
}

TEST(ExtCommIp6Content, OrderedFieldByField) {
  const ExtCommIp6Content ascending[] = {
      content(0, 0, "::", 65535),   content(0, 0, "::1", 0),      content(0, 0, "7fff::", 0),
      content(0, 0, "8000::", 255), content(0, 0, "8000::", 256), content(0, 1, "::", 0),
      content(0, 0x80, "::", 0),    content(1, 0, "::", 0),       content(0x80, 0, "::", 0),
  };
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      EXPECT_EQ(i < j, ascending[i] < ascending[j]) << i << ' ' << j;
      EXPECT_EQ(i == j, ascending[i] == ascending[j]) << i << ' ' << j;
    }
  }
}

TEST(ExtCommIp6Content, TextHoldsTheTypeOctetsRaw) {
  const Kiv::String text = valueToStrep(content(0, 'A', "2001:db8::1", 65535));
  EXPECT_EQ(Kiv::String("type=\0;subtype=A;addr=2001:db8::1;localAdmin=65535", 50), text);
  EXPECT_EQ(text, streamed(content(0, 'A', "2001:db8::1", 65535)));
  EXPECT_EQ("type=\xff;subtype=@;addr=::;localAdmin=0", valueToStrep(content(255, 0x40, "::", 0)));
}

TEST(ExtCommIp6Content, FieldsCanBeSetOneByOne) {
  ExtCommIp6Content made;
  made.typeIs(0x40);
  made.subtypeIs(2);
  made.addrIs(ip6("2001:db8::1"));
  made.localAdminIs(0xABCD);
  EXPECT_EQ(content(0x40, 2, "2001:db8::1", 0xABCD), made);
  EXPECT_EQ(made, extCommIp6Factory(extCommClassificationColor, made)->extCommIp6Content());
}

TEST(ExtCommIp6Content, ReaderTakesNumbersAndNamesWhatIsWrong) {
  const auto read = [](const Kiv::String& text, ExtCommIp6Content* target) {
    const char* it = text.data();
    try {
      sequenceToValue(it, text.data() + text.size(), target);
      return Kiv::String(it, text.data() + text.size());
    } catch (const Kiv::RangeException& error) {
      EXPECT_EQ(text.data(), it);
      return Kiv::String("error: ") + error.what();
    }
  };
  ExtCommIp6Content target;
  EXPECT_EQ(" more", read("type=64;subtype=2;addr=2001:DB8::0:1;localAdmin=10 more", &target));
  EXPECT_EQ(content(64, 2, "2001:db8::1", 10), target);
  const ExtCommIp6Content before = target;
  for (const auto& [text, error] : std::vector<std::pair<Kiv::String, Kiv::String>>{
           {"", "\"type\" expected"},
           {"type=256;subtype=2;addr=::;localAdmin=1",
            "attribute \"type\": number > 255 not allowed"},
           {"type=1;subtype=A;addr=::;localAdmin=1",
            "attribute \"subtype\": unsigned number expected"},
           {"type=1;subtype=2;addr=;localAdmin=1",
            "attribute \"addr\": \"\" is not an IPv6 address"},
           {"type=1;subtype=2;addr=:::;localAdmin=1",
            "attribute \"addr\": \":::\" is not an IPv6 address"},
           {"type=1;subtype=2;addr=::;localAdmin=65536",
            "attribute \"localAdmin\": number > 65535 not allowed"},
           {"type=1;subtype=2;localAdmin=1;addr=::", "\"addr\" expected"},
           {"type=1;subtype=2;addr=::", "\";\" expected"},
           {valueToStrep(before), "attribute \"type\": unsigned number expected"},
       }) {
    EXPECT_EQ("error: " + error, read(text, &target)) << text;
    EXPECT_EQ(before, target);
  }
  // The text of a content is read back only if its raw octets happen to be digits, as here.
  EXPECT_EQ("", read(valueToStrep(content('7', '0', "::1", 1)), &target));
  EXPECT_EQ(content(7, 0, "::1", 1), target);
}

TEST(ExtCommIp6StrepFormat, KeepsFiveBitsAndIsReadBack) {
  EXPECT_EQ(31, StrepFormat(0xff).bits());
  EXPECT_EQ(0, StrepFormat(0xe0).bits());
  EXPECT_TRUE(StrepFormat(0x08).strepFormatAsdot());
  EXPECT_TRUE(StrepFormat(0x10).strepFormatLinkBwWeighted());
  EXPECT_EQ(
      "Value('Routing::Bgp::ExtCommIp6::StrepFormat', ** {'strepFormatDefault': False, "
      "'strepFormatClassification': True, 'strepFormatUI': False, 'strepFormatAsdot': True, "
      "'strepFormatLinkBwWeighted': False})",
      valueToStrep(StrepFormat(0x0a)));
  for (U8 bits = 0; bits < 32; ++bits) {
    EXPECT_EQ(bits, StrepFormat(valueToStrep(StrepFormat(bits))).bits());
  }
}

TEST(ExtCommIp6, TextsOfBothClasses) {
  constexpr auto unSpecified = extCommClassificationUnSpecified;
  const struct {
    ExtCommIp6::Ptr extComm;
    const char *subtype, *diagnostic, *policy, *userInterface;
  } rows[] = {
      {extCommIp6Factory(unSpecified, content(0, 2, "2001:db8::1", 10)), "unspecified",
       "<extCommIp6PktTypeTransIpv6Address addr=2001:db8::1 localAdmin=10>", "2001:db8::1:10",
       "0002-IP6:2001:db8::1:10"},
      {ExtCommIp6SubtypedIs(unSpecified, content(0, 2, "2001:db8::1", 10)),
       "extCommIp6PktSubtypeRouteTarget",
       "<extCommIp6PktTypeTransIpv6Address extCommIp6PktSubtypeRouteTarget addr=2001:db8::1 "
       "localAdmin=10>",
       "2001:db8::1:10", "0002-IP6:2001:db8::1:10"},
      {ExtCommIp6SubtypedIs(unSpecified, content(0, 0x99, "::", 0)), "subtype=153",
       "<extCommIp6PktTypeTransIpv6Address subtype=153 addr=:: localAdmin=0>", ":::0",
       "0099-IP6::::0"},
      {ExtCommIp6SubtypedIs(unSpecified, content(0x40, 2, "::ffff:192.0.2.1", 65535)), "subtype=2",
       "<extCommIp6PktTypeNonTransIpv6Address subtype=2 addr=::ffff:192.0.2.1 localAdmin=65535>",
       "::ffff:192.0.2.1:65535", "0002-IP6(NT):::ffff:192.0.2.1:65535"},
      {ExtCommIp6SubtypedIs(unSpecified, content(0xc7, 2, "::1", 1)), "none",
       "<extCommIp6PktTypeUnknown none addr=::1 localAdmin=1>", "::1:1", "8702-IP6(NT):::1:1"},
      {extCommIp6Factory(unSpecified, content(7, 2, "::1", 1)), "unspecified",
       "<extCommIp6PktTypeUnknown addr=::1 localAdmin=1>", "::1:1", "0702-IP6:::1:1"},
  };
  for (const auto& row : rows) {
    std::ostringstream subtype;
    row.extComm->formatSubtype(subtype);
    EXPECT_EQ(row.subtype, subtype.str());
    EXPECT_EQ(row.diagnostic, row.extComm->toStrep());
    EXPECT_EQ(row.diagnostic, streamed(row.extComm.ptr()));
    EXPECT_EQ(row.diagnostic, streamed(*row.extComm));
    for (U8 bits = 0; bits < 32; ++bits) {
      EXPECT_EQ((bits & 6) == 6 ? row.userInterface : row.policy,
                row.extComm->toStrepForPolicy(StrepFormat(bits)));
    }
  }
  EXPECT_EQ("NULL", streamed(static_cast<const ExtCommIp6*>(nullptr)));
}

TEST(ExtCommIp6, SubtypeNamesOfEveryMember) {
  for (const Kiv::EnumRow& row : Kiv::enumInfo<BgpExtCommIp6PktSubtypeTransIpv6Address>.rows()) {
    if (!row.valid) continue;
    const auto extComm = ExtCommIp6SubtypedIs(extCommClassificationUnSpecified,
                                              content(0, static_cast<U8>(row.value), "::", 0));
    EXPECT_EQ(row.name, extComm->pktSubtypeTransIpv6AddressAsString());
    EXPECT_EQ(BgpExtCommPktSubtype(row.value), extComm->pktSubtype());
    EXPECT_EQ(extCommIp6PktTypeTransIpv6Address, extComm->pktType());
  }
}

TEST(ExtCommIp6DeathTest, SubtypeNamesOfTheWrongTypeAreFaults) {
  const auto of = [](U8 type) {
    return ExtCommIp6SubtypedIs(extCommClassificationUnSpecified, content(type, 2, "::", 0));
  };
  EXPECT_DEATH(of(0x40)->pktSubtypeTransIpv6AddressAsString(),
               "extCommIp6PktTypeTransIpv6Address_ == pktType\\(\\)");
  EXPECT_DEATH(of(0)->pktSubtypeNonTransIpv6AddressAsString(),
               "extCommIp6PktTypeNonTransIpv6Address_ == pktType\\(\\)");
  const auto plain = [](U8 type) {
    return extCommIp6Factory(extCommClassificationUnSpecified, content(type, 2, "::", 0));
  };
  EXPECT_DEATH(plain(0)->pktSubtypeTransIpv6AddressAsString(),
               "!pktSubtype\\(\\).isUnspecified\\(\\).*::pktSubtypeTransIpv6AddressAsString");
  EXPECT_DEATH(plain(0x40)->pktSubtypeNonTransIpv6AddressAsString(),
               "!pktSubtype\\(\\).isUnspecified\\(\\).*::pktSubtypeNonTransIpv6AddressAsString");
}

}  // namespace
}  // namespace Routing::Bgp
