#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"
#include "OvBgp/BgpPathAttributeEnums.h"

namespace {

using namespace Routing::Bgp;

// "!" marks markers, which are not valid.
TEST(BgpPathAttributeEnums, ModuleHoldsTheNumbersAndTheirValidity) {
  const Kiv::EnumModule* module = Kiv::EnumRegistry::findModule("BgpPathAttributeEnums");
  ASSERT_NE(module, nullptr);
  std::string found;
  for (const Kiv::EnumInfo* info : module->enums()) {
    found += info->name();
    for (const Kiv::EnumRow& row : info->rows()) {
      found += (row.valid ? " " : " !") + std::to_string(row.value);
    }
    found += "; ";
  }
  EXPECT_EQ(
      found,
      "AspType 0 1 2 3 4 5 6; BgpPathAttrFlag 16 32 64 128 192 224; BgpPathAttrType 0 1 2 3 4 "
      "5 6 7 8 9 10 12 13 14 15 16 17 18 22 23 25 26 29 32 36 40 128 255 !256; "
      "OriginCode 0 1 2 !256; PrefixSidTlvType 0 1 2 3; ");
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
  EXPECT_EQ(BgpPathAttrFlagInstance(4), BgpPathAttrFlag::optionalTransitive);
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

TEST(BgpPathAttrTypeShowString, EveryNumberHasAText) {
  std::string texts;
  for (U32 type = 0; type < 600; ++type) {
    const std::string text = bgpPathAttrTypeShowString(BgpPathAttrType{type});
    if (text != "Invalid attribute") texts += std::to_string(type) + ' ' + text + ", ";
  }
  EXPECT_EQ(texts,
            "0 Invalid Path Attribute, 1 Origin, 2 AS Path, 3 Nexthop, 4 MED, 5 Local Preference, "
            "6 Atomic Aggregator, 7 Aggregator, 8 Community, 9 Originator ID, 10 Cluster List, "
            "12 Advertiser, 13 RCID Path, 14 MP Reach NLRI, 15 MP Unreach NLRI, "
            "16 Extended Community, 17 AS4 Path, 18 AS4 Aggregator, 22 PMSI Tunnel, "
            "23 Tunnel Encapsulation, 25 IPv6 Address Specific Extended Community, "
            "26 Accumulated IGP Metric, 29 Link State, 32 Large Community, 36 Domain Path, "
            "40 BGP Prefix-SID, 128 Attribute Set, 255 Reserved for Development, ");
  EXPECT_STREQ(bgpPathAttrTypeShowString(BgpPathAttrType{0x10001}), "Invalid attribute");
}

}  // namespace
