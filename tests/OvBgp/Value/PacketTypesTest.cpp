#include <gtest/gtest.h>

#include <iomanip>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"
#include "OvBgp/BgpPathAttributeEnums.h"
#include "OvBgp/OvBgpCommunityPacketTypes.h"
#include "OvBgp/Value/ExtCommContent.h"

namespace {

using Kiv::RangeException;
using Routing::Bgp::ExtCommContent;

// The numbers of each enumeration in declared order. "!" marks markers, which are not valid. The
// numbers are written out a second time here, since they are on the wire and in configurations.
constexpr struct {
  const char* enumeration;
  const char* numbers;
} packetEnumRows[] = {
    {"BgpExtCommPktType", "0 1 2 3 4 5 6 8 128 129 130 64 65 66 67 68 !256"},
    {"BgpExtCommPktSubtypeTransTwoOctetAs", "2 3 5 8 9 10 16 !20 !256"},
    {"BgpExtCommPktSubtypeTransIpv4Address", "2 3 5 7 10 11 12 16 !256"},
    {"BgpExtCommPktSubtypeTransFourOctetAs", "2 3 4 5 8 9 16 !256"},
    {"BgpExtCommPktSubtypeTransOpaque", "1 3 6 11 12 13 !256"},
    {"BgpExtCommPktSubtypeEvpn", "0 1 2 3 4 5 6 8 9 10 11 12 !256"},
    {"BgpExtCommPktSubtypeTransFlowspecRedirectNexthop", "0 !256"},
    {"BgpExtCommPktSubtypeTransGeneric", "6 7 8 9 10 11 !256"},
    {"BgpExtCommPktSubtypeTransGenericPart2", "8 !256"},
    {"BgpExtCommPktSubtypeTransGenericPart3", "8 !256"},
    {"BgpExtCommPktSubtypeNonTransTwoOctetAs", "4 128 !256"},
    {"BgpExtCommPktSubtypeNonTransIpv4Address", "!256"},
    {"BgpExtCommPktSubtypeNonTransFourOctetAs", "4 !256"},
    {"BgpExtCommPktSubtypeNonTransOpaque", "0 1 !256"},
    {"ExtCommClassification", "0 1 2 3 4 5 6 7 8 9 !10"},
    {"BgpCommunityValue", "0 4294967041 4294967042 4294967043 4294901760 4294901766 4294901767"},
    {"BgpExtCommIp6PktType", "0 64 !256"},
    {"BgpExtCommIp6PktSubtypeTransIpv6Address", "2 3 4 11 12 16 17 18 !256"},
    {"BgpExtCommIp6PktSubtypeNonTransIpv6Address", "!256"},
};

TEST(PacketTypes, RegistryHoldsTheNumbersAndTheirValidity) {
  const Kiv::EnumModule* module = Kiv::EnumRegistry::findModule("OvBgpCommunityPacketTypes");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(module->enums().size(), std::size(packetEnumRows));
  for (const auto& [enumeration, numbers] : packetEnumRows) {
    const Kiv::EnumInfo* info = Kiv::EnumRegistry::findEnum(enumeration);
    ASSERT_NE(info, nullptr) << enumeration;
    std::string found;
    for (const Kiv::EnumRow& row : info->rows()) {
      found += (found.empty() ? "" : " ") + std::string(row.valid ? "" : "!") +
               std::to_string(row.value);
    }
    EXPECT_EQ(found, numbers) << enumeration;
  }
}

TEST(PacketTypes, NamesKeepTheirSpelling) {
  using namespace Routing::Bgp;
  EXPECT_EQ(stringValue(BgpExtCommPktTypeInstance(3)), "extCommPktTypeTransOpaque");
  EXPECT_EQ(stringValue(BgpExtCommPktSubtypeTransOpaqueInstance(256)),
            "extCommPktSubtypeTransOpaqeUnknown");
  EXPECT_EQ(stringValue(BgpExtCommPktSubtypeNonTransFourOctetAsInstance(256)),
            "extCommPktSubNonTransFourOctetAsUnknown");
  EXPECT_EQ(stringValue(BgpExtCommPktSubtypeTransTwoOctetAsInstance(20)),
            "extCommPktSubtypeNonTransTwoOctetAsLinkBandwidthAny");
  EXPECT_EQ(stringValue(BgpExtCommPktSubtypeTransFlowspecRedirectNexthopInstance(256)),
            "extCommPktSubtypeFlowspecRedirectUnknown");
  EXPECT_EQ(stringValue(BgpExtCommPktSubtypeNonTransOpaqueInstance(0)),
            "extCommPktSubtypeNonTransOriginValidationState");
  EXPECT_EQ(BgpCommunityValueInstance("communityLlgrStale"), BgpCommunityValue{0xffff0006});
  EXPECT_EQ(BgpExtCommIp6PktTypeInstance(0x40), extCommIp6PktTypeNonTransIpv6Address);
}

// A number given to an instance function is a value, not a position. For path attributes it is a
// position.
TEST(PacketTypes, InstancesAreByValue) {
  using namespace Routing::Bgp;
  EXPECT_EQ(BgpExtCommPktTypeInstance(8), extCommPktTypeTransFlowspecRedirectNexthop);
  EXPECT_EQ(BgpExtCommPktTypeInstance(256), extCommPktTypeUnknown);
  EXPECT_THROW(BgpExtCommPktTypeInstance(7), RangeException);
  EXPECT_THROW(BgpExtCommPktTypeInstance("extCommPktTypeTransOpaqe"), RangeException);
}

// The contract of every enumeration of the library, run once for each.
template <class E>
class EnumContract : public testing::Test {};

template <class Packet, class PathAttribute>
struct AllTypes;
template <class... P, class... A>
struct AllTypes<Kiv::EnumList<P...>, Kiv::EnumList<A...>> {
  using Types = testing::Types<P..., A...>;
};
using AllEnums = AllTypes<Routing::Bgp::BgpPacketEnums, Routing::Bgp::BgpPathAttributeEnums>::Types;

struct EnumName {
  template <class E>
  static std::string GetName(int) {
    return std::string(Kiv::enumInfo<E>.name());
  }
};
TYPED_TEST_SUITE(EnumContract, AllEnums, EnumName);

// The calls have no namespace and the test is outside the library's, so argument-dependent lookup
// alone must find the functions, as in a user's code.
TYPED_TEST(EnumContract, EveryMemberReadsBackFromItsName) {
  for (const Kiv::EnumRow& row : Kiv::enumInfo<TypeParam>.rows()) {
    const TypeParam member{row.value};
    std::ostringstream os;
    os << member << ",rest";
    const std::string text = os.str();
    const char* it = text.data();
    TypeParam read{~row.value};
    sequenceToValue(it, text.data() + text.size(), &read);
    EXPECT_EQ(read, member) << text;
    EXPECT_STREQ(it, ",rest");
    EXPECT_EQ(valueToStrep(member), row.name);
    EXPECT_EQ(stringValue(member), row.name);
    EXPECT_EQ(Kiv::enumInstance<TypeParam>(valueToStrep(member)), member);
    EXPECT_EQ(Kiv::enumInstance<TypeParam>(row.value), member);
  }
}

TYPED_TEST(EnumContract, PositionsAreThoseOfTheRows) {
  const auto rows = Kiv::enumInfo<TypeParam>.rows();
  for (U32 i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(TypeParam{rows[i].value}, Kiv::enumInstanceAt<TypeParam>(i));
  }
  EXPECT_THROW(Kiv::enumInstanceAt<TypeParam>(static_cast<U32>(rows.size())), RangeException);
}

TYPED_TEST(EnumContract, ValidExactlyWhenListedAsSuch) {
  std::set<U32> valid;
  for (const Kiv::EnumRow& row : Kiv::enumInfo<TypeParam>.rows()) {
    if (row.valid) valid.insert(row.value);
  }
  U32 found = 0;
  for (U32 number = 0; number <= 70000; ++number) {
    ASSERT_EQ(bgpIsValidEnumMember(TypeParam{number}), valid.contains(number)) << number;
    const U32 high = ~number;
    ASSERT_EQ(bgpIsValidEnumMember(TypeParam{high}), valid.contains(high)) << high;
    found += valid.contains(number) + valid.contains(high);
  }
  EXPECT_EQ(found, valid.size());
}

TEST(ExtCommContent, DecodesTheWireOctets) {
  constexpr ExtCommContent content(0x4203'fde8'0000'0064);
  static_assert(content.typeOctet() == 0x42 && content.subtypeOctet() == 0x03);
  EXPECT_EQ(content.value6(), 0xfde8'0000'0064u);
  EXPECT_EQ(content.value7(), 0x03'fde8'0000'0064u);
  EXPECT_FALSE(content.transitiveFlag());
  EXPECT_TRUE(ExtCommContent(0x8202'0000'0000'0000).transitiveFlag());
  EXPECT_TRUE(ExtCommContent(0x00ff'ffff'ffff'ffff).transitiveFlag());
}

TEST(ExtCommContent, OrdersAsOneUnsignedNumber) {
  const std::vector<U64> ascending{0,
                                   1,
                                   0x0002'fde8'0000'0064,
                                   0x0002'fde8'0000'0065,
                                   0x03ff'ffff'ffff'ffff,
                                   0x4000'0000'0000'0000,
                                   0x8000'0000'0000'0000,
                                   ~U64{0}};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      const ExtCommContent a(ascending[i]);
      const ExtCommContent b(ascending[j]);
      EXPECT_EQ(a < b, i < j);
      EXPECT_EQ(a == b, i == j);
    }
  }
}

TEST(ExtCommContent, StreamFormatPlaysNoPartAndStays) {
  std::ostringstream os;
  os << std::oct << std::showbase << std::uppercase << std::setfill('*') << std::left
     << std::showpos << std::setw(30);
  const std::ios_base::fmtflags flags = os.flags();
  ExtCommContent content;
  content.valueIs(0x0002'fde8'0000'0064);
  os << content << 'x';
  EXPECT_EQ(os.str(), "0x0002fde800000064x") << "the width is reset";
  EXPECT_EQ(os.flags(), flags);
  EXPECT_EQ(os.fill(), '*');

  std::ostringstream plain;
  plain << ExtCommContent(0) << ' ' << ExtCommContent(~U64{0});
  EXPECT_EQ(plain.str(), "0x0000000000000000 0xffffffffffffffff");
}

TEST(ExtCommContent, ReadsItsDecimalTextBack) {
  for (U64 value : {U64{0}, U64{0x0002'fde8'0000'0064}, ~U64{0}}) {
    const std::string text = valueToStrep(ExtCommContent(value)) + ")";
    EXPECT_EQ(text, std::to_string(value) + ")");
    const char* it = text.data();
    ExtCommContent read(77);
    sequenceToValue(it, text.data() + text.size(), &read);
    EXPECT_EQ(read, ExtCommContent(value));
    EXPECT_STREQ(it, ")");
  }
  const std::string tooLarge = "18446744073709551616";
  const char* it = tooLarge.data();
  ExtCommContent kept(77);
  EXPECT_THROW(sequenceToValue(it, tooLarge.data() + tooLarge.size(), &kept), RangeException);
  EXPECT_EQ(kept, ExtCommContent(77));
  EXPECT_EQ(it, tooLarge.data());
}

}  // namespace
