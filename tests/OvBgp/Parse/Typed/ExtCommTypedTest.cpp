// Tests of the typed classes: the decoded fields and all texts.
#include <gtest/gtest.h>

#include <bit>
#include <iomanip>
#include <limits>
#include <sstream>
#include <vector>

#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"
#include "OvBgp/Parse/ExtCommColor.h"
#include "OvBgp/Parse/ExtCommDefaultGateway.h"
#include "OvBgp/Parse/ExtCommLinkBandwidth.h"
#include "OvBgp/Parse/ExtCommOriginValidationState.h"
#include "OvBgp/Parse/ExtCommRouteOrigin.h"
#include "OvBgp/Parse/ExtCommRouteTarget.h"
#include "OvBgp/Parse/ExtCommTunnelEncap.h"

namespace Routing::Bgp {
namespace {

template <class... Class>
constexpr bool allSmall = sizeof(void*) != 8 || ((sizeof(Class) <= 48) && ...);
static_assert(allSmall<ExtCommRouteTargetAs, ExtCommRouteTargetIpv4Address, ExtCommRouteOriginAs,
                       ExtCommRouteOriginIpv4Address, ExtCommLinkBandwidth, ExtCommColor,
                       ExtCommTunnelEncap, ExtCommDefaultGateway, ExtCommOriginValidationState>);

ExtCommContent content(U64 value) { return ExtCommContent(value); }

constexpr U64 linkBandwidthOfAs0 = 0x4004'0000'0000'0000;
ExtCommLinkBandwidth::PtrConst bandwidthOf(U32 bits) {
  return extCommLinkBandwidthFactory(content(linkBandwidthOfAs0 | bits));
}
ExtCommLinkBandwidth::PtrConst bandwidthOf(float bytesPerSecond) {
  return bandwidthOf(std::bit_cast<U32>(bytesPerSecond));
}

// The expected texts of one object. The prefix depends on strepFormatClassification and
// strepFormatUI, and the value on strepFormatAsdot and strepFormatLinkBwWeighted.
struct Texts {
  ExtComm::PtrConst extComm;
  ExtCommClassification classification;
  const char* bare;             // neither flag, or strepFormatUI alone
  const char* classification_;  // strepFormatClassification alone
  const char* ui;               // both
  const char* diagnostic;
};

void expectTexts(const Texts& row) {
  EXPECT_EQ(row.diagnostic, row.extComm->toStrep());
  EXPECT_EQ(row.classification, row.extComm->classification()) << row.diagnostic;
  EXPECT_TRUE(row.extComm->hasNotificationActive()) << row.diagnostic;
  EXPECT_FALSE(row.extComm->everDeduped()) << row.diagnostic;
  EXPECT_FALSE(row.extComm->pktSubtype().isUnspecified()) << row.diagnostic;
  // strepFormatDefault and strepFormatJson change nothing.
  for (const unsigned ignored : {0U, 1U, 8U, 9U}) {
    const auto text = [&](unsigned bits) {
      return row.extComm->toStrepForPolicy(ExtComm::StrepFormat(static_cast<U8>(bits | ignored)));
    };
    EXPECT_EQ(row.bare, text(0)) << ignored;
    EXPECT_EQ(row.bare, text(4)) << ignored;
    EXPECT_EQ(row.classification_, text(2)) << ignored;
    EXPECT_EQ(row.ui, text(6)) << ignored;
  }
}

TEST(ExtCommTyped, TextsByFormat) {
  using enum ExtCommClassification;
  const std::vector<Texts> rows{
      {extCommRouteTargetAsFactory(content(0x0002FDE800000064), false),
       extCommClassificationRouteTarget, "65000:100", "RT:65000:100", "Route-Target-AS:65000:100",
       "<RouteTarget2ByteASN 65000:100 0x0002fde800000064>"},
      {extCommRouteTargetAsFactory(content(0x0202FA56EA000007), true),
       extCommClassificationRouteTarget, "4200000000:7", "RT:4200000000:7",
       "Route-Target-AS4:4200000000:7", "<RouteTarget4ByteASN 4200000000:7 0x0202fa56ea000007>"},
      {extCommRouteTargetIpv4AddressFactory(content(0x01020A0000010005)),
       extCommClassificationRouteTarget, "10.0.0.1:5", "RT:10.0.0.1:5",
       "Route-Target-IP:10.0.0.1:5", "<RouteTarget 10.0.0.1:5 0x01020a0000010005>"},
      {extCommRouteOriginAsFactory(content(0x0003FFFFFFFFFFFF), false),
       extCommClassificationRouteOrigin, "65535:4294967295", "SoO:65535:4294967295",
       "Route-Origin-AS:65535:4294967295",
       "<RouteOrigin2ByteASN 65535:4294967295 0x0003ffffffffffff>"},
      {extCommRouteOriginAsFactory(content(0x020300010000FFFF), true),
       extCommClassificationRouteOrigin, "65536:65535", "SoO:65536:65535",
       "Route-Origin-AS4:65536:65535", "<RouteOrigin4ByteASN 65536:65535 0x020300010000ffff>"},
      {extCommRouteOriginIpv4AddressFactory(content(0x01030A0000010005)),
       extCommClassificationRouteOrigin, "10.0.0.1:5", "SoO:10.0.0.1:5",
       "Route-Origin-IP:10.0.0.1:5", "<RouteOrigin 10.0.0.1:5 0x01030a0000010005>"},
      // The bandwidth is 1.25e9 bytes per second.
      {extCommLinkBandwidthFactory(content(0x4004FDE84E9502F9)), extCommClassificationLinkBandwidth,
       "65000:1.25e+09", "lbw 65000:1.25e+09", "Link-Bandwidth-AS:65000:10Gbps",
       "<LinkBandwidth 65000:1.25e+09 0x4004fde84e9502f9>"},
      {extCommColorFactory(content(0x030B000000000064)), extCommClassificationColor,
       "Color:CO(00):100", "Color:CO(00):100", "Color:CO(00):100",
       "<Color: 100(00) 0x030b000000000064>"},
      {extCommColorFactory(content(0x030B8000FFFFFFFF)), extCommClassificationColor,
       "Color:CO(10):4294967295", "Color:CO(10):4294967295", "Color:CO(10):4294967295",
       "<Color: 4294967295(10) 0x030b8000ffffffff>"},
      {extCommColorFactory(content(0x030B7FFF00000000)), extCommClassificationColor,
       "Color:CO(01):0", "Color:CO(01):0", "Color:CO(01):0", "<Color: 0(01) 0x030b7fff00000000>"},
      {extCommTunnelEncapFactory(content(0x030C000000000008)), extCommClassificationTunnelEncap,
       "tunnelTypeVxlan", "TunnelEncap:tunnelTypeVxlan", "TunnelEncap:tunnelTypeVxlan",
       "<TunnelEncap tunnelTypeVxlan:8 0x030c000000000008>"},
      {extCommTunnelEncapFactory(content(0x030C000000000063)), extCommClassificationTunnelEncap,
       "tunnelTypeUnknown-99", "TunnelEncap:tunnelTypeUnknown-99",
       "TunnelEncap:tunnelTypeUnknown-99", "<TunnelEncap tunnelTypeUnknown:99 0x030c000000000063>"},
      {extCommDefaultGatewayFactory(content(0x030D000000000001)),
       extCommClassificationDefaultGateway, "DefaultGateway", "DefaultGateway", "DefaultGateway",
       "<DefaultGateway 0x030d000000000001>"},
      {extCommOriginValidationStateFactory(content(0x4300000000000000)),
       extCommClassificationOriginValidationState, "", "", "Origin-Validation-State:valid",
       "<OriginValidationState valid 0x4300000000000000>"},
      {extCommOriginValidationStateFactory(content(0x4300000000000002)),
       extCommClassificationOriginValidationState, "", "", "Origin-Validation-State:invalid",
       "<OriginValidationState invalid 0x4300000000000002>"},
      {extCommOriginValidationStateFactory(content(0x4300000000000007)),
       extCommClassificationOriginValidationState, "", "", "Origin-Validation-State:unknown",
       "<OriginValidationState unknown(7) 0x4300000000000007>"},
      // Only the last octet is the state; the other octets are reserved.
      {extCommOriginValidationStateFactory(content(0x4300FFFFFFFFFF01)),
       extCommClassificationOriginValidationState, "", "", "Origin-Validation-State:not-found",
       "<OriginValidationState not-found 0x4300ffffffffff01>"}};
  for (const Texts& row : rows) expectTexts(row);
}

TEST(ExtCommTyped, AsdotChangesPolicyTextsOnly) {
  const auto target = extCommRouteTargetAsFactory(content(0x0202FA56EA000007), true);
  EXPECT_EQ("Route-Target-AS4:64086.59904:7", target->toStrepForUI(true, false, false));
  EXPECT_EQ("64086.59904:7", target->toStrepForPolicy(ExtComm::StrepFormat(16)));
  const auto origin = extCommRouteOriginAsFactory(content(0x0203000100000007), true);
  EXPECT_EQ("SoO:1.0:7", origin->toStrepForPolicy(ExtComm::StrepFormat(16 | 2)));
  EXPECT_EQ("<RouteOrigin4ByteASN 65536:7 0x0203000100000007>", origin->toStrep());
  const auto small = extCommRouteTargetAsFactory(content(0x02020000FFFF0007), true);
  EXPECT_EQ("65535:7", small->toStrepForPolicy(ExtComm::StrepFormat(16)));
}

TEST(ExtCommTyped, DiagnosticsKeepTheCallersFormat) {
  const std::vector<ExtComm::PtrConst> all{
      extCommRouteTargetAsFactory(content(0x0002FDE800000064), false),
      extCommRouteOriginIpv4AddressFactory(content(0x01030A0000010005)),
      bandwidthOf(1.5F),
      extCommColorFactory(content(0x030B000000000064)),
      extCommTunnelEncapFactory(content(0x030C000000000063)),
      extCommDefaultGatewayFactory(content(0x030D000000000000)),
      extCommOriginValidationStateFactory(content(0x4300000000000007))};
  for (const auto& extComm : all) {
    std::ostringstream out;
    out << std::hex << std::fixed << std::setprecision(1) << std::setfill('*') << std::setw(99);
    const auto flags = out.flags();
    out << *extComm;
    EXPECT_EQ(extComm->toStrep(), out.str());
    EXPECT_EQ(flags, out.flags());
    EXPECT_EQ(0, out.width());
    EXPECT_EQ(1, out.precision());
  }
}

// The four-octet flag selects how the value is read, and the diagnostic text names the type octet.
TEST(ExtCommRoute, ValueIsReadByTheFlag) {
  const auto target = extCommRouteTargetAsFactory(content(0x0002000100020003), true);
  EXPECT_EQ("Route-Target-AS4:65538:3", target->toStrepForUI(false, false, false));
  EXPECT_EQ("<RouteTarget2ByteASN 65538:3 0x0002000100020003>", target->toStrep());
}

TEST(ExtCommRouteDeathTest, DiagnosticOfAnotherTypeStopsTheProcess) {
  EXPECT_DEATH((void)extCommRouteTargetAsFactory(content(0x4002000100020003), false)->toStrep(),
               "\"unexpected type\" failed in OvBgp/Parse/ExtCommRouteTarget:[0-9]+, "
               ".*ExtCommRouteTargetAs::formatDerivedType");
  EXPECT_DEATH((void)extCommRouteOriginAsFactory(content(0x0103000100020003), true)->toStrep(),
               "\"unexpected type\" failed in OvBgp/Parse/ExtCommRouteOrigin:[0-9]+, "
               ".*ExtCommRouteOriginAs::formatDerivedType");
}

TEST(ExtCommLinkBandwidth, WeightIsTheBareNumber) {
  const auto bandwidth = extCommLinkBandwidthFactory(content(0x4004FDE84E9502F9));
  EXPECT_EQ("Link-Bandwidth-AS:65000:10Gbps", bandwidth->toStrepForUI(true, false, true));
  EXPECT_EQ("Link-Bandwidth-AS:65000:1.25e+09", bandwidth->toStrepForUI(false, true, false));
  EXPECT_EQ("lbw 65000:1.25e+09", bandwidth->toStrepForPolicy(ExtComm::StrepFormat(2 | 32)));
}

TEST(ExtCommLinkBandwidth, KnowsAnUnspecifiedAs) {
  EXPECT_TRUE(bandwidthOf(1.0F)->isLinkBandwidthWithUnspecifiedAsNumber());
  EXPECT_FALSE(extCommLinkBandwidthFactory(content(0x4004000100000000))
                   ->isLinkBandwidthWithUnspecifiedAsNumber());
  const auto untyped =
      ExtCommSubtypedIs(extCommClassificationLinkBandwidth, content(linkBandwidthOfAs0));
  EXPECT_FALSE(untyped->isLinkBandwidthWithUnspecifiedAsNumber());
  EXPECT_TRUE(untyped->isValid());
}

TEST(ExtCommLinkBandwidth, SmallerBandwidthIsBetter) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  const std::vector<float> ascending{-infinity, -2, -1, 0, 1e-40F, 1, 1.25e9F, infinity};
  for (const float a : ascending) {
    EXPECT_EQ(a > 0 && a != infinity, bandwidthOf(a)->isValid()) << a;
    for (const float b : ascending) {
      EXPECT_EQ(a < b, bandwidthOf(a)->isBetterThan(bandwidthOf(b))) << a << " " << b;
    }
    EXPECT_FALSE(bandwidthOf(a)->isBetterThan(bandwidthOf(nan)));
    EXPECT_FALSE(bandwidthOf(nan)->isBetterThan(bandwidthOf(a)));
  }
  EXPECT_FALSE(bandwidthOf(nan)->isValid());
  // `slow` has the larger content because of its AS number, but only the bandwidth may decide.
  const auto slow = extCommLinkBandwidthFactory(content(0x4004FFFF3F800000));
  EXPECT_TRUE(slow->isBetterThan(bandwidthOf(2.0F)));
}

TEST(ExtCommLinkBandwidthDeathTest, IsComparedWithItsLikeOnly) {
  const auto bandwidth = bandwidthOf(1.0F);
  const ExtComm::PtrConst untyped =
      ExtCommAsNumberIs(extCommClassificationLinkBandwidth, bandwidth->getContent(), false);
  for (const ExtComm::PtrConst& other : {ExtComm::PtrConst(), untyped}) {
    EXPECT_DEATH((void)bandwidth->isBetterThan(other),
                 "\"other is a link bandwidth\" failed in OvBgp/Parse/ExtCommLinkBandwidth");
  }
}

TEST(ExtCommTunnelEncap, EveryNumberIsAKindOrUnknown) {
  unsigned named = 0;
  for (U32 number = 0; number < 65536; ++number) {
    // The octets between subtype and tunnel type are reserved and have no effect.
    const auto encap = extCommTunnelEncapFactory(content(0x030CFFFFFFFF0000 | number));
    ASSERT_EQ(number, encap->tunnelTypeNumber());
    if (encap->tunnelType() == tunnelTypeUnknown) continue;
    ASSERT_EQ(number, Kiv::enumValue(encap->tunnelType()));
    ++named;
  }
  EXPECT_EQ(8U, named);
}

TEST(TunnelType, IsAnEnumerationWithNames) {
  const Kiv::EnumInfo* registered = Kiv::EnumRegistry::findEnum("TunnelType");
  ASSERT_NE(nullptr, registered);
  Kiv::String names;
  for (const Kiv::EnumRow& row : registered->rows()) {
    names += std::to_string(row.value) + ' ' + Kiv::String(row.name) + ' ';
    EXPECT_EQ(row.name, stringValue(TunnelTypeInstance(row.value)));
    EXPECT_EQ(row.value != 65536, bgpIsValidEnumMember(TunnelTypeInstance(Kiv::String(row.name))));
  }
  EXPECT_EQ(
      "1 tunnelTypeL2tpv3OverIp 2 tunnelTypeGre 7 tunnelTypeIpInIp 8 tunnelTypeVxlan "
      "9 tunnelTypeNvgre 10 tunnelTypeMpls 11 tunnelTypeMplsInGre 12 tunnelTypeVxlanGpe "
      "65536 tunnelTypeUnknown ",
      names);
  EXPECT_THROW((void)TunnelTypeInstance(3), Kiv::RangeException);
}

TEST(ExtCommOriginValidationState, BuiltContentsReadBack) {
  using enum Rpki::OriginValidationState;
  struct Row {
    Rpki::OriginValidationState state;
    U64 value;
  };
  for (const Row& row : {Row{valid, 0x4300000000000000}, Row{notFound, 0x4300000000000001},
                         Row{invalid, 0x4300000000000002}, Row{unknown, 0x4300000000000003}}) {
    const ExtCommContent built = ExtCommOriginValidationState::buildExtCommContent(row.state);
    EXPECT_EQ(content(row.value), built);
    EXPECT_EQ(row.state, extCommOriginValidationStateFactory(built)->state());
  }
}

}  // namespace
}  // namespace Routing::Bgp
