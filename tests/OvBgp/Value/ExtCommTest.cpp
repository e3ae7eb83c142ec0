#include "OvBgp/Value/ExtComm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "Kiv/Exception.h"
#include "OvBgp/ExtCommIp6.h"
#include "OvBgp/SubList/ExtCommClassificationList.h"
#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"
#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

using Format = ExtComm::StrepFormat;

// The objects are interned by the million, so none of the classes may grow.
static_assert(sizeof(void*) != 8 || sizeof(ExtComm) == 24);
static_assert(sizeof(void*) != 8 || sizeof(ExtCommSubtyped) == 24);
static_assert(sizeof(void*) != 8 || sizeof(ExtCommIpv4Address) == 24);
static_assert(sizeof(void*) != 8 || sizeof(ExtCommAsNumber) == 24);

constexpr ExtCommClassification unSpecified = extCommClassificationUnSpecified;

ExtComm::Ptr plain(U64 value) { return extCommFactory(unSpecified, ExtCommContent(value)); }
ExtComm::Ptr subtyped(U64 value) { return ExtCommSubtypedIs(unSpecified, ExtCommContent(value)); }

TEST(ExtCommStrepFormat, IsSixBits) {
  EXPECT_EQ(
      "Value('Routing::Bgp::ExtComm::StrepFormat', ** {'strepFormatDefault': True, "
      "'strepFormatClassification': False, 'strepFormatUI': True, 'strepFormatJson': False, "
      "'strepFormatAsdot': False, 'strepFormatLinkBwWeighted': True})",
      valueToStrep(Format(1 | 4 | 32)));
  for (unsigned bits = 0; bits < 256; ++bits) {
    if (bits >= 64) {
      EXPECT_THROW(Format{static_cast<U8>(bits)}, Kiv::RangeException) << bits;
      continue;
    }
    const Format format(static_cast<U8>(bits));
    EXPECT_EQ(bits, Format(valueToStrep(format)).bits());
    EXPECT_EQ((bits & 2) != 0 && (bits & 4) != 0, format.isUI()) << bits;
  }
}

TEST(ExtCommText, TypeCodeHidesTheNonTransitiveBitInItsDigits) {
  struct Row {
    const char* suffix;
    U8 type, subtype;
    bool transitive;
    const char* text;
  };
  for (const Row& row :
       {Row{"-AS4", 0x02, 0x02, true, "0202-AS4"}, Row{"", 0x43, 0x00, false, "0300(NT)"},
        Row{"-AS", 0x40, 0x04, false, "0004-AS(NT)"}, Row{"", 0xC0, 0xAB, false, "80ab(NT)"},
        Row{"", 0x80, 0x0A, true, "800a"}, Row{"-IP", 0xFF, 0xFF, false, "bfff-IP(NT)"}}) {
    EXPECT_EQ(row.text, extCommTypeAsString(row.suffix, row.type, row.subtype, row.transitive));
    OvFmt::StackBackedBuffer<2> text;
    text.append("= ");
    addExtCommTypeAsString(text, row.suffix, row.type, row.subtype, row.transitive);
    EXPECT_EQ(Kiv::String("= ") + row.text, text.str());
  }
}

TEST(ExtComm, KeepsWhatItIsMadeOf) {
  for (const auto& extComm : {plain(0x0002FDE800000064), subtyped(0x0002FDE800000064)}) {
    EXPECT_EQ(ExtCommContent(0x0002FDE800000064), extComm->getContent());
    EXPECT_EQ(unSpecified, extComm->classification());
    EXPECT_TRUE(extComm->hasNotificationActive());
    EXPECT_FALSE(extComm->everDeduped());
    EXPECT_FALSE(extComm->isLinkBandwidthWithUnspecifiedAsNumber());
    EXPECT_FALSE(extComm->policyMatchStrepUI());
    EXPECT_TRUE(extComm->isValid());
  }
  EXPECT_TRUE(plain(0x0102000000000000)->pktSubtype().isUnspecified());
  for (unsigned subtype = 0; subtype < 256; ++subtype) {
    EXPECT_EQ(subtype, subtyped(U64{subtype} << 48)->pktSubtype().word());
  }
  EXPECT_EQ(extCommClassificationEvpn,
            extCommFactory(extCommClassificationEvpn, ExtCommContent(0x06))->classification());
}

TEST(ExtComm, TypeWithoutANameIsUnknown) {
  for (unsigned type = 0; type < 256; ++type) {
    const bool isNamed =
        type <= 6 || type == 8 || (type >= 0x40 && type <= 0x44) || (type >= 0x80 && type <= 0x82);
    EXPECT_EQ(isNamed ? type : 256U, Kiv::enumValue(plain(U64{type} << 56)->pktType())) << type;
  }
}

TEST(ExtComm, EqualityAndHashAreThoseOfTheContentWhateverTheClass) {
  const auto a = plain(0x0002FDE800000064);
  const auto same = ExtCommAsNumberIs(unSpecified, a->getContent(), false);
  const auto other = plain(0x0002FDE800000065);
  EXPECT_EQ(a->hash(), same->hash());
  EXPECT_EQ(a->hash(), ExtComm::hashOf(a->getContent()));
  EXPECT_EQ(a->hash(), a->probeHash());
  EXPECT_NE(a->hash(), other->hash());
  EXPECT_TRUE(a->compare(same.ptr()));
  EXPECT_FALSE(a->compare(other.ptr()));
  EXPECT_TRUE(same->compareByContent(a->getContent()));
  EXPECT_FALSE(same->compareByContent(other->getContent()));
}

TEST(ExtComm, SmallerValueIsBetter) {
  const auto low = plain(0x7FFFFFFFFFFFFFFF);
  const auto high = plain(0x8000000000000000);
  EXPECT_TRUE(low->isBetterThan(high));
  EXPECT_FALSE(high->isBetterThan(low));
  EXPECT_FALSE(low->isBetterThan(plain(0x7FFFFFFFFFFFFFFF)));
  EXPECT_DEATH((void)low->isBetterThan(nullptr), "\"other\" failed in OvBgp/OvBgpCommunity");
}

TEST(ExtComm, PolicyTextNeedsBothFlagsOfTheUserInterface) {
  struct Row {
    U64 value;
    const char* text;
  };
  for (const Row& row : {Row{0x0399000000001234, "0399:0x00 0x00 0x00 0x00 0x12 0x34"},
                         Row{0x4405A1B2C3D4E5F6, "0405(NT):0xa1 0xb2 0xc3 0xd4 0xe5 0xf6"},
                         Row{0xFFFFFFFFFFFFFFFF, "bfff(NT):0xff 0xff 0xff 0xff 0xff 0xff"}}) {
    for (const auto& extComm : {plain(row.value), subtyped(row.value)}) {
      for (U8 bits = 0; bits < 64; ++bits) {
        EXPECT_EQ((bits & 6) == 6 ? row.text : "", extComm->toStrepForPolicy(Format(bits)))
            << unsigned{bits};
      }
      EXPECT_EQ(row.text, extComm->toStrepForUI(true, false, true));
    }
  }
}

// A community whose text is the number of the format that it was called with.
class FormatProbe final : public ExtComm {
 public:
  FormatProbe() : ExtComm(unSpecified, ExtCommContent()) {}
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    to.appendDecimal(format.bits());
  }
};

TEST(ExtComm, UserInterfaceTextIsAPolicyText) {
  const FormatProbe probe;
  for (const bool asdot : {false, true}) {
    for (const bool weighted : {false, true}) {
      for (const bool json : {false, true}) {
        EXPECT_EQ(std::to_string(6 + 16 * asdot + 32 * weighted + 8 * json),
                  probe.toStrepForUI(asdot, weighted, json));
      }
    }
  }
}

// A type octet, the function that names its subtypes, and the enumeration of these.
struct SubtypedType {
  U8 type;
  Kiv::String (ExtComm::*function)() const;
  const Kiv::EnumInfo& subtypes;
};

const SubtypedType subtypedTypes[] = {
    {0x00, &ExtComm::pktSubtypeTransTwoOctetAsString,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransTwoOctetAs>},
    {0x01, &ExtComm::pktSubtypeTransIpv4AddressString,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransIpv4Address>},
    {0x02, &ExtComm::pktSubtypeTransFourOctetAsString,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransFourOctetAs>},
    {0x03, &ExtComm::pktSubtypeTransOpaqueString, Kiv::enumInfo<BgpExtCommPktSubtypeTransOpaque>},
    {0x06, &ExtComm::pktSubtypeEvpnString, Kiv::enumInfo<BgpExtCommPktSubtypeEvpn>},
    {0x08, &ExtComm::pktSubtypeFlowspecRedirectNexthopString,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransFlowspecRedirectNexthop>},
    {0x80, &ExtComm::pktSubtypeTransGenericString, Kiv::enumInfo<BgpExtCommPktSubtypeTransGeneric>},
    {0x81, &ExtComm::pktSubtypeTransGenericPart2String,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransGenericPart2>},
    {0x82, &ExtComm::pktSubtypeTransGenericPart3String,
     Kiv::enumInfo<BgpExtCommPktSubtypeTransGenericPart3>},
    {0x40, &ExtComm::pktSubtypeNonTransTwoOctetAsString,
     Kiv::enumInfo<BgpExtCommPktSubtypeNonTransTwoOctetAs>},
    {0x41, &ExtComm::pktSubtypeNonTransIpv4AddressString,
     Kiv::enumInfo<BgpExtCommPktSubtypeNonTransIpv4Address>},
    {0x42, &ExtComm::pktSubtypeNonTransFourOctetAsString,
     Kiv::enumInfo<BgpExtCommPktSubtypeNonTransFourOctetAs>},
    {0x43, &ExtComm::pktSubtypeNonTransOpaqueString,
     Kiv::enumInfo<BgpExtCommPktSubtypeNonTransOpaque>},
};

Kiv::String subtypeText(const ExtComm& extComm) {
  std::ostringstream out;
  extComm.formatSubtype(out);
  return out.str();
}

TEST(ExtCommSubtype, EveryNumberOfEveryTypeHasItsText) {
  for (const SubtypedType& row : subtypedTypes) {
    for (unsigned subtype = 0; subtype < 256; ++subtype) {
      const auto extComm = subtyped(U64{row.type} << 56 | U64{subtype} << 48);
      const Kiv::EnumRow* const named = row.subtypes.findValue(subtype);
      const Kiv::String expected =
          named && named->valid ? Kiv::String(named->name) : "subtype=" + std::to_string(subtype);
      EXPECT_EQ(expected, (extComm.ptr()->*row.function)()) << unsigned{row.type};
      EXPECT_EQ(expected, subtypeText(*extComm)) << unsigned{row.type};
    }
  }
}

TEST(ExtCommSubtype, TypeWithoutATablePrintsNone) {
  unsigned none = 0;
  for (unsigned type = 0; type < 256; ++type) {
    const bool hasTable =
        std::ranges::any_of(subtypedTypes, [=](const auto& row) { return row.type == type; });
    EXPECT_EQ("unspecified", subtypeText(*plain(U64{type} << 56)));
    if (hasTable) continue;
    EXPECT_EQ("none", subtypeText(*subtyped(U64{type} << 56 | U64{0x02} << 48))) << type;
    ++none;
  }
  EXPECT_EQ(256U - 13, none);
}

TEST(ExtCommSubtypeDeathTest, FunctionsStopTheProcessOnAnythingElse) {
  EXPECT_DEATH((void)subtyped(0x0002000000000000)->pktSubtypeTransOpaqueString(),
               "\"extCommPktTypeTransOpaque_ == pktType\\(\\)\" failed in "
               "OvBgp/OvBgpCommunity:[0-9]+, .*ExtComm::pktSubtypeTransOpaqueString\\(\\) const");
  EXPECT_DEATH((void)subtyped(0x0702000000000000)->pktSubtypeNonTransIpv4AddressString(),
               "\"extCommPktTypeNonTransIpv4Address_ == pktType\\(\\)\" failed");
  EXPECT_DEATH((void)plain(0x030B000000000000)->pktSubtypeTransOpaqueString(),
               "\"!pktSubtype\\(\\).isUnspecified\\(\\)\" failed in OvBgp/OvBgpCommunity:[0-9]+, "
               ".*ExtComm::pktSubtypeTransOpaqueString\\(\\) const");
}

// A classification is kept in six bits. If a larger number were cut, lists would group the
// community under another classification.
TEST(ExtCommDeathTest, AClassificationThatIsNotKeptStopsTheProcess) {
  for (const ExtCommClassification own : {ExtCommClassification{11}, ExtCommClassification{63}}) {
    EXPECT_EQ(own, extCommFactory(own, ExtCommContent(1))->classification());
    EXPECT_EQ(own, extCommIp6Factory(own, ExtCommIp6Content())->classification());
  }
  for (const auto& [refused, condition] :
       {std::pair(extCommClassificationOneBeyondLast,
                  "classification != extCommClassificationOneBeyondLast"),
        std::pair(ExtCommClassification{64}, "classification < 64")}) {
    EXPECT_DEATH(extCommFactory(refused, ExtCommContent(1)), condition);
    EXPECT_DEATH(extCommIp6Factory(refused, ExtCommIp6Content()), condition);
    EXPECT_DEATH(extCommClassificationListFactory(refused), condition);
  }
}

TEST(ExtComm, DiagnosticTextNamesWhatItCan) {
  struct Row {
    ExtComm::PtrConst extComm;
    const char* text;
  };
  for (const Row& row :
       {Row{subtyped(0x030D000000000000),
            "<extCommPktTypeTransOpaque extCommPktSubtypeTransOpaqueDefaultGateway "
            "0x030d000000000000>"},
        Row{subtyped(0x0399000000001234),
            "<extCommPktTypeTransOpaque subtype=153 0x0399000000001234>"},
        Row{subtyped(0x4405A1B2C3D4E5F6),
            "<extCommPktTypeNonTransQosMarking none 0x4405a1b2c3d4e5f6>"},
        Row{subtyped(0x0914000000000001), "<extCommPktTypeUnknown none 0x0914000000000001>"},
        Row{plain(0x0014000000000001), "<extCommPktTypeTransTwoOctetAs 0x0014000000000001>"},
        Row{plain(0xFFFFFFFFFFFFFFFF), "<extCommPktTypeUnknown 0xffffffffffffffff>"}}) {
    EXPECT_EQ(row.text, row.extComm->toStrep());
  }
}

TEST(ExtComm, StreamingKeepsTheCallersFormat) {
  const auto extComm = subtyped(0x030D000000000000);
  std::ostringstream out;
  out << std::hex << std::uppercase << std::showbase << std::setfill('*');
  const auto flags = out.flags();
  out << std::setw(99) << *extComm << std::setw(99) << extComm.ptr() << std::setw(99)
      << static_cast<const ExtComm*>(nullptr);
  EXPECT_EQ(0, out.width());
  extComm->formatSubtype(out);
  extComm->formatCommunityValue(out);
  EXPECT_EQ(extComm->toStrep() + extComm->toStrep() + "NULL" +
                "extCommPktSubtypeTransOpaqueDefaultGateway0x030d000000000000",
            out.str());
  EXPECT_EQ(flags, out.flags());
  EXPECT_EQ('*', out.fill());
}

TEST(ExtCommAsNumber, FlagAloneSaysHowTheOctetsAreRead) {
  const ExtCommContent content(0x0005FDE800000064);
  const auto two = ExtCommAsNumberIs(unSpecified, content, false);
  EXPECT_EQ(0xFDE8U, two->asNumber());
  EXPECT_EQ(0x64U, two->localAdmin());
  EXPECT_EQ(content.value() & 0xFFFFFFFF, two->localAdmin4Octets());
  const auto four = ExtCommAsNumberIs(unSpecified, ExtCommContent(0x0005FFFFFFFE8001), true);
  EXPECT_EQ(0xFFFFFFFEU, four->asNumber());
  EXPECT_EQ(0x8001U, four->localAdmin());
  EXPECT_EQ(0x8001U, four->localAdmin2Octets());
}

TEST(ExtCommAsNumber, AsdotSplitsWhatNeedsMoreThan16Bits) {
  struct Row {
    U32 as;
    const char* asdot;
  };
  for (const Row& row : {Row{0, "0"}, Row{65535, "65535"}, Row{65536, "1.0"}, Row{65537, "1.1"},
                         Row{4200000000, "64086.59904"}, Row{0xFFFFFFFF, "65535.65535"}}) {
    const ExtCommContent content(0x0200000000000000 | U64{row.as} << 16);
    const auto extComm = ExtCommAsNumberIs(unSpecified, content, true);
    EXPECT_EQ(row.asdot, extComm->formatAsNumber(true));
    EXPECT_EQ(std::to_string(row.as), extComm->formatAsNumber(false));
  }
}

TEST(ExtCommBaseForms, TextsStartWithTheTypeCodeForUsersOnly) {
  struct Row {
    ExtComm::PtrConst extComm;
    const char* value;
    const char* asdot;
    const char* code;
    const char* diagnostic;
  };
  const auto as = [](U64 value, bool four) {
    return ExtCommAsNumberIs(unSpecified, ExtCommContent(value), four);
  };
  const auto ip = [](U64 value) {
    return ExtCommIpv4AddressIs(unSpecified, ExtCommContent(value));
  };
  for (const Row& row :
       {Row{as(0x0005FDE8FFFFFFFF, false), "65000:4294967295", "65000:4294967295", "0005-AS:",
            "<extCommPktTypeTransTwoOctetAs extCommPktSubtypeTransTwoOctetAsOspfDomainIdentifier "
            "ASN=65000 0x0005fde8ffffffff>"},
        Row{as(0x4280000100020003, true), "65538:3", "1.2:3", "0280-AS4(NT):",
            "<extCommPktTypeNonTransFourOctetAs subtype=128 ASN=65538 0x4280000100020003>"},
        Row{ip(0x0107FF0001FEFFFF), "255.0.1.254:65535", "255.0.1.254:65535", "0107-IP:",
            "<extCommPktTypeTransIpv4Address extCommPktSubtypeTransIpv4AddressOspfRouteId "
            "255.0.1.254 0x0107ff0001feffff>"},
        Row{ip(0x4102000000000000), "0.0.0.0:0", "0.0.0.0:0", "0102-IP(NT):",
            "<extCommPktTypeNonTransIpv4Address subtype=2 0.0.0.0 0x4102000000000000>"}}) {
    EXPECT_EQ(row.diagnostic, row.extComm->toStrep());
    EXPECT_TRUE(row.extComm->hasNotificationActive());
    for (U8 bits = 0; bits < 64; ++bits) {
      const Kiv::String code = (bits & 6) == 6 ? row.code : "";
      EXPECT_EQ(code + ((bits & 16) != 0 ? row.asdot : row.value),
                row.extComm->toStrepForPolicy(Format(bits)))
          << unsigned{bits};
    }
  }
}

}  // namespace
}  // namespace Routing::Bgp
