// Tests of the rule tree: the class of the object for every type and subtype, with and without
// plugins.
#include <gtest/gtest.h>

#include <map>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Kiv/Exception.h"
#include "Kiv/Type.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

using Classes = std::map<std::pair<unsigned, unsigned>, std::string_view>;

// The class of the fallback object, by type octet.
const std::map<unsigned, std::string_view> fallbacks = {
    {0x00, "ExtCommAsNumber"}, {0x01, "ExtCommIpv4Address"}, {0x02, "ExtCommAsNumber"},
    {0x03, "ExtCommSubtyped"}, {0x80, "ExtCommSubtyped"},    {0x81, "ExtCommSubtyped"},
    {0x82, "ExtCommSubtyped"}, {0x40, "ExtCommAsNumber"},    {0x41, "ExtCommIpv4Address"},
    {0x42, "ExtCommAsNumber"}, {0x43, "ExtCommSubtyped"},
};

// The class of the typed object, by type and subtype octet: one row for each leaf of the library.
const Classes leaves = {
    {{0x00, 0x02}, "ExtCommRouteTargetAs"},
    {{0x02, 0x02}, "ExtCommRouteTargetAs"},
    {{0x01, 0x02}, "ExtCommRouteTargetIpv4Address"},
    {{0x00, 0x03}, "ExtCommRouteOriginAs"},
    {{0x02, 0x03}, "ExtCommRouteOriginAs"},
    {{0x01, 0x03}, "ExtCommRouteOriginIpv4Address"},
    {{0x03, 0x0d}, "ExtCommDefaultGateway"},
    {{0x40, 0x04}, "ExtCommLinkBandwidth"},
    {{0x03, 0x0c}, "ExtCommTunnelEncap"},
    {{0x03, 0x0b}, "ExtCommColor"},
    {{0x43, 0x00}, "ExtCommOriginValidationState"},
};

ExtCommContent contentOf(unsigned type, unsigned subtype) {
  return ExtCommContent(U64{type} << 56 | U64{subtype} << 48 | 0x0001'0203'0405);
}

void expectClasses(const BgpParseExtendedCommunityRule& root, const Classes& known) {
  for (unsigned type = 0; type < 256; ++type) {
    const auto fallback = fallbacks.find(type);
    for (unsigned subtype = 0; subtype < 256; ++subtype) {
      const ExtCommContent content = contentOf(type, subtype);
      const auto leaf = known.find({type, subtype});
      const std::string_view expected = leaf != known.end()           ? leaf->second
                                        : fallback != fallbacks.end() ? fallback->second
                                                                      : "ExtComm";
      const ExtComm::Ptr object = root.parseExtendedCommunity(content);
      ASSERT_EQ(expected, object->fwkType().name()) << content;
      ASSERT_EQ(content, object->getContent());
      ASSERT_EQ(leaf == known.end(), object->classification() == extCommClassificationUnSpecified);
      ASSERT_EQ(expected == "ExtComm", object->pktSubtype().isUnspecified()) << content;
      ASSERT_TRUE(object->hasNotificationActive());
      ASSERT_FALSE(object->everDeduped());
      ASSERT_EQ(1U, object->references());
    }
  }
}

TEST(RuleTree, WithoutPluginsKnowsTypesOnly) {
  expectClasses(*bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl()), {});
}

TEST(RuleTree, WithPluginsKnowsTheirSubtypes) {
  expectClasses(*bgpParseExtCommContainerSmFactory()->extCommParser(), leaves);
}

TEST(RuleTree, TypeSaysHowAsNumbersAreRead) {
  const auto container = bgpParseExtCommContainerSmFactory();
  for (const auto& root : {bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl()),
                           container->extCommParser()}) {
    for (const unsigned type : {0x00U, 0x40U, 0x02U, 0x42U}) {
      for (const unsigned subtype : {2U, 3U, 9U}) {
        const auto object = Kiv::staticPtrCast<ExtCommAsNumber>(
            root->parseExtendedCommunity(contentOf(type, subtype)));
        EXPECT_EQ((type & 2) != 0, object->fourOctetAs()) << type << " " << subtype;
      }
    }
  }
}

TEST(RuleTree, Ip6ValuesTakeTheFallback) {
  const auto container = bgpParseExtCommContainerSmFactory();
  for (unsigned type = 0; type < 256; ++type) {
    for (const unsigned subtype : {0U, 2U, 11U, 255U}) {
      const ExtCommIp6Content content(static_cast<U8>(type), static_cast<U8>(subtype), {}, 7);
      const auto object = container->extCommParser()->parseExtendedCommunityIp6(content);
      EXPECT_EQ(type == 0x00 || type == 0x40 ? "ExtCommIp6Subtyped" : "ExtCommIp6",
                object->fwkType().name());
      EXPECT_EQ(content, object->getContent());
      EXPECT_EQ(extCommClassificationUnSpecified, object->classification());
    }
  }
}

TEST(RuleTree, ShowsTheTextOfTheTypedClass) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto& root = container->extCommParser();
  const U64 fourOctetTarget = 0x0202'0001'0001'0064;
  EXPECT_EQ("Route-Target-AS4:65537:100", root->showString(fourOctetTarget, false, false, false));
  EXPECT_EQ("Route-Target-AS4:1.1:100", root->showString(fourOctetTarget, true, false, false));
  const U64 linkBandwidth = 0x4004'fde8'4995'1a80;
  const ExtComm::Ptr object = root->parseExtendedCommunity(ExtCommContent(linkBandwidth));
  for (const bool weighted : {false, true}) {
    EXPECT_EQ(object->toStrepForUI(false, weighted, false),
              root->showString(linkBandwidth, false, weighted, false));
  }
  EXPECT_EQ(0U, ExtCommRouteTargetAs::kivType().objects()) << "nothing is kept";
}

// A leaf of any kind that returns null, or an object of a classification that no other rule uses.
template <class Base>
class TestLeaf final : public Base {
  KIV_OBJECT(TestLeaf)

 public:
  using Base::Base;
  Kiv::Ptr<typename Base::Object> inhale(const typename Base::Content& content) const override {
    if (declines) return nullptr;
    return Kiv::Ptr<typename Base::Object>(
        new typename Base::Object(extCommClassificationEvpn, content));
  }
  bool declines = false;
};
template <class Base>
Kiv::Type& TestLeaf<Base>::kivType() noexcept {
  static constinit Kiv::Type record{"TestLeaf"};
  return record;
}
template <class Base>
const Kiv::Type& TestLeaf<Base>::fwkType() const noexcept {
  return kivType();
}

template <class Kind>
Kiv::Ptr<TestLeaf<typename Kind::SubtypeRuleBase>> testLeaf(typename Kind::Subtype subtype) {
  using Leaf = TestLeaf<typename Kind::SubtypeRuleBase>;
  return Kiv::Ptr<Leaf>(new Leaf(BgpParseExtCommControl(), subtype));
}

template <class Kind>
Kiv::Ptr<typename Kind::Rule> typeRule() {
  return bgpParseExtCommRuleIs<typename Kind::Rule>(BgpParseExtCommControl());
}

template <class Kind>
class TypeRule : public testing::Test {};
using TypeKinds =
    testing::Types<BgpParseKindTransTwoOctetAs, BgpParseKindTransIpv4Address,
                   BgpParseKindTransFourOctetAs, BgpParseKindTransOpaque, BgpParseKindTransGeneric,
                   BgpParseKindTransGenericPart2, BgpParseKindTransGenericPart3,
                   BgpParseKindNonTransTwoOctetAs, BgpParseKindNonTransIpv4Address,
                   BgpParseKindNonTransFourOctetAs, BgpParseKindNonTransOpaque,
                   BgpParseKindIp6Trans, BgpParseKindIp6NonTrans>;
TYPED_TEST_SUITE(TypeRule, TypeKinds, );

ExtCommContent contentOf(unsigned subtype, const ExtComm*) { return contentOf(0, subtype); }
ExtCommIp6Content contentOf(unsigned subtype, const ExtCommIp6*) {
  return {0, static_cast<U8>(subtype), {}, 0};
}

// Stores a leaf under each subtype in turn. Parsing must reach it exactly if the subtype has a
// name.
TYPED_TEST(TypeRule, ReachesLeavesOfNamedSubtypesOnly) {
  using Subtype = typename TypeParam::Subtype;
  const typename TypeParam::Object* const object = nullptr;
  const auto rule = typeRule<TypeParam>();
  for (unsigned subtype = 0; subtype < 256; ++subtype) {
    const auto leaf = testLeaf<TypeParam>(Subtype{subtype});
    rule->subTypeRuleIs(leaf);
    ASSERT_TRUE(rule->subTypeRule(Subtype{subtype}) == leaf);
    for (const unsigned asked : {subtype, (subtype + 1) % 256}) {
      const bool isReached = asked == subtype && bgpIsValidEnumMember(Subtype{subtype});
      const auto made = rule->inhale(contentOf(asked, object));
      ASSERT_EQ(isReached, made->classification() == extCommClassificationEvpn) << subtype;
    }
    leaf->declines = true;
    ASSERT_EQ(extCommClassificationUnSpecified,
              rule->inhale(contentOf(subtype, object))->classification());
    ASSERT_TRUE(rule->subTypeRuleHas(Subtype{subtype}));
    ASSERT_TRUE(rule->subTypeRuleDel(Subtype{subtype}));
    ASSERT_FALSE(rule->subTypeRuleHas(Subtype{subtype}));
    ASSERT_FALSE(rule->subTypeRuleDel(Subtype{subtype}));
  }
}

TYPED_TEST(TypeRule, HoldsOneLeafASubtype) {
  using Subtype = typename TypeParam::Subtype;
  const auto rule = typeRule<TypeParam>();
  EXPECT_EQ(TypeParam::pktType, rule->pktType());
  const auto first = testLeaf<TypeParam>(Subtype{256});
  const auto second = testLeaf<TypeParam>(Subtype{256});
  rule->subTypeRuleIs(first);
  rule->subTypeRuleIs(second);
  EXPECT_EQ(1U, first->references());
  EXPECT_TRUE(rule->subTypeRule(Subtype{256}) == second);
  EXPECT_THROW(rule->subTypeRuleIs(nullptr), Kiv::NullArgumentException);
  EXPECT_THROW(rule->subTypeRuleIs(testLeaf<TypeParam>(Subtype{257})), Kiv::RangeException);
  EXPECT_THROW(rule->subTypeRuleIs(testLeaf<TypeParam>(Subtype{0xffffffff})), Kiv::RangeException);
  EXPECT_FALSE(rule->subTypeRule(Subtype{0xffffffff}));
  EXPECT_FALSE(rule->subTypeRuleDel(Subtype{0xffffffff}));
  rule->subTypeRuleDelAll();
  EXPECT_EQ(1U, second->references());
}

TYPED_TEST(TypeRule, AnnouncesItselfOnConstruction) {
  const auto registry = bgpParseExtCommRuleCollectionsFactory();
  using Rule = typename TypeParam::Rule;
  static_assert(!std::is_destructible_v<Rule>, "only the reference count withdraws and destroys");
  Kiv::Ptr<Rule> rule(new Rule(BgpParseExtCommControl(registry)));
  EXPECT_EQ(TypeParam::announced,
            registry->template keysOf<TypeParam>().has(typename TypeParam::Key(rule.ptr())));
  EXPECT_EQ(1U, rule->references());
  rule = nullptr;
  EXPECT_EQ(0U, registry->template keysOf<TypeParam>().size());
}

TEST(RuleTree, RootRefusesNullsAndForgetsRules) {
  const auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl());
  EXPECT_THROW(root->typeRuleIs(nullptr), Kiv::NullArgumentException);
  EXPECT_THROW(root->ip6TypeRuleIs(nullptr), Kiv::NullArgumentException);
  EXPECT_TRUE(root->typeRuleHas(extCommPktTypeTransOpaque));
  EXPECT_TRUE(root->typeRuleDel(extCommPktTypeTransOpaque));
  EXPECT_FALSE(root->typeRuleHas(extCommPktTypeTransOpaque));
  EXPECT_FALSE(root->typeRuleDel(extCommPktTypeTransOpaque));
  EXPECT_FALSE(root->typeRuleDel(extCommPktTypeTransEvpn));
  EXPECT_EQ("ExtComm", root->parseExtendedCommunity(contentOf(3, 11))->fwkType().name());
  root->typeRuleDelAll();
  EXPECT_EQ("ExtComm", root->parseExtendedCommunity(contentOf(0, 2))->fwkType().name());
  EXPECT_TRUE(root->ip6TypeRule(extCommIp6PktTypeTransIpv6Address));
  EXPECT_TRUE(root->ip6TypeRuleHas(extCommIp6PktTypeTransIpv6Address));
  EXPECT_TRUE(root->ip6TypeRuleDel(extCommIp6PktTypeTransIpv6Address));
  EXPECT_FALSE(root->ip6TypeRuleHas(extCommIp6PktTypeTransIpv6Address));
  root->ip6TypeRuleDelAll();
  EXPECT_EQ("ExtCommIp6", root->parseExtendedCommunityIp6({0x40, 2, {}, 0})->fwkType().name());
}

}  // namespace
