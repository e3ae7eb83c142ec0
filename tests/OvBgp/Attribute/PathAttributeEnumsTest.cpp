#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"
#include "OvBgp/BgpPathAttributeEnums.h"

namespace {

using namespace Routing::Bgp;

TEST(BgpPathAttributeEnums, ModuleListsThemInItsOrder) {
  const Kiv::EnumModule* module = Kiv::EnumRegistry::findModule("BgpPathAttributeEnums");
  ASSERT_NE(module, nullptr);
  std::vector<std::string> found;
  for (const Kiv::EnumInfo* info : module->enums()) {
    found.push_back(std::string(info->name()) + " " + std::to_string(info->size()));
  }
  EXPECT_EQ(found, (std::vector<std::string>{"AspType 7", "BgpPathAttrFlag 6", "BgpPathAttrType 29",
                                             "OriginCode 4", "PrefixSidTlvType 4"}));
}

// Number 11 is not assigned, so from there on a member's position is less than its number.
TEST(BgpPathAttributeEnums, InstancesCountPositionsNotValues) {
  EXPECT_EQ(BgpPathAttrTypeInstance(10), BgpPathAttrType::clusterList);
  EXPECT_EQ(BgpPathAttrTypeInstance(11), BgpPathAttrType::advertiser);
  EXPECT_EQ(BgpPathAttrTypeInstance(28), BgpPathAttrType::attrTypeUnknown);
  EXPECT_THROW(BgpPathAttrTypeInstance(29), Kiv::RangeException);
  EXPECT_EQ(OriginCodeInstance(3), OriginCode::originUnknown);
  EXPECT_EQ(PrefixSidTlvTypeInstance(2), PrefixSidTlvType::ipv6SidTlv);
  EXPECT_EQ(AspTypeInstance("aspTypeConfedEbgp"), AspType{5});

  const std::vector<U32> ascending{0x10, 0x20, 0x40, 0x80, 0xc0, 0xe0};
  for (U32 i = 0; i < ascending.size(); ++i) {
    EXPECT_EQ(BgpPathAttrFlagInstance(i), BgpPathAttrFlag{ascending[i]});
  }
}

TEST(BgpPathAttributeEnums, NamesAreThoseOfTheNumbers) {
  std::ostringstream os;
  os << BgpPathAttrFlag{0xc0} << ' ' << BgpPathAttrFlag{0xe0} << ' ' << BgpPathAttrFlag{0x50};
  EXPECT_EQ(os.str(), "optionalTransitive optionalTransitivePartial BgpPathAttrFlag(80)");
  EXPECT_EQ(stringValue(BgpPathAttrType{25}), "extCommunityIp6");
  const std::string text = "extCommunityIp6";
  const char* it = text.data();
  BgpPathAttrType type{};
  sequenceToValue(it, text.data() + text.size(), &type);
  EXPECT_EQ(Kiv::enumValue(type), 25u);
}

TEST(BgpPathAttributeEnums, OnlyUnknownMembersAreInvalid) {
  EXPECT_FALSE(bgpIsValidEnumMember(BgpPathAttrType::attrTypeUnknown));
  EXPECT_FALSE(bgpIsValidEnumMember(BgpPathAttrType{11}));
  EXPECT_FALSE(bgpIsValidEnumMember(OriginCode::originUnknown));
  EXPECT_FALSE(bgpIsValidEnumMember(BgpPathAttrFlag{0x50}));
  EXPECT_TRUE(bgpIsValidEnumMember(BgpPathAttrType::invalidPathAttr));
  EXPECT_TRUE(bgpIsValidEnumMember(PrefixSidTlvType::invalidTlv));
  EXPECT_TRUE(bgpIsValidEnumMember(AspType::aspTypeMax));
}

TEST(BgpPathAttrTypeShowString, EveryNumberHasAText) {
  const std::map<U32, std::string> texts{
      {0, "Invalid Path Attribute"},
      {1, "Origin"},
      {2, "AS Path"},
      {3, "Nexthop"},
      {4, "MED"},
      {5, "Local Preference"},
      {6, "Atomic Aggregator"},
      {7, "Aggregator"},
      {8, "Community"},
      {9, "Originator ID"},
      {10, "Cluster List"},
      {12, "Advertiser"},
      {13, "RCID Path"},
      {14, "MP Reach NLRI"},
      {15, "MP Unreach NLRI"},
      {16, "Extended Community"},
      {17, "AS4 Path"},
      {18, "AS4 Aggregator"},
      {22, "PMSI Tunnel"},
      {23, "Tunnel Encapsulation"},
      {25, "IPv6 Address Specific Extended Community"},
      {26, "Accumulated IGP Metric"},
      {29, "Link State"},
      {32, "Large Community"},
      {36, "Domain Path"},
      {40, "BGP Prefix-SID"},
      {128, "Attribute Set"},
      {255, "Reserved for Development"},
  };
  for (U32 type = 0; type < 600; ++type) {
    const auto at = texts.find(type);
    const std::string expected = at == texts.end() ? "Invalid attribute" : at->second;
    EXPECT_EQ(bgpPathAttrTypeShowString(BgpPathAttrType{type}), expected) << type;
  }
  EXPECT_STREQ(bgpPathAttrTypeShowString(BgpPathAttrType{0x10001}), "Invalid attribute");
}

}  // namespace
