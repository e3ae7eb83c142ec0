// Tests of the announcement protocol: when nodes are announced and withdrawn, and how plugins
// react.
#include <gtest/gtest.h>

#include <functional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Kiv/NotifieeList.h"
#include "Kiv/Trace.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

using Collections = BgpParseExtCommRuleCollections;
using Heard = std::vector<U32>;

const ExtCommContent pluginColor(0x030b'0000'0000'0001);
const ExtCommContent evpnContent(0x0600'0000'0000'0001);

std::string_view classOf(const BgpParseExtendedCommunityRule& root, const ExtCommContent& content) {
  return root.parseExtendedCommunity(content)->fwkType().name();
}

class Ear : public Kiv::Notifiee {
 public:
  explicit Ear(const Collections& collections) { notifierIs(collections.notifieeList()); }
  void handleChange(const Kiv::Change& change) override {
    attributes.push_back(change.attribute());
    if (then) then(change);
  }
  Heard attributes;
  std::function<void(const Kiv::Change&)> then;
};

// Returns the expected notifications when a tree is built: the type rules from `firstType` up to
// `endType`, which excludes the non-transitive IPv6 rule, and last the root.
Heard announcements(U32 root, U32 firstType, U32 endType) {
  Heard all;
  for (U32 type = firstType; type < endType; ++type) all.push_back(type);
  all.push_back(root);
  return all;
}

TEST(Announcing, EachNodeOnceAndTheRootLast) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  Ear ear(*registry);
  BgpParseExtendedCommunityRule::Ptr root =
      bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_EQ(announcements(130, 131, 143), ear.attributes);
  EXPECT_TRUE(
      registry->extendedCommunityTypeRuleInstanceHas(BgpParseExtendedCommunityRuleKey(root.ptr())));
  ear.attributes.clear();
  root = nullptr;
  EXPECT_EQ(13U, ear.attributes.size());
  EXPECT_EQ(130U, ear.attributes.front());
  EXPECT_EQ(0U, registry->extendedCommunityTypeRuleInstance().size());
  EXPECT_EQ(0U, registry->extendedCommSubTypeTransOpaqueRuleInstance().size());
  EXPECT_EQ(1U, registry->references()) << "nothing is left that knows the registry";
}

// An observer may take a reference to a node when the node is announced and when it is withdrawn.
TEST(Announcing, NodesAreWholeAndHeld) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  Ear ear(*registry);
  Kiv::Ptr<const BgpParseExtCommTransOpaqueRule> kept;
  ear.then = [&kept](const Kiv::Change& change) {
    if (change.attribute() != 134) return;
    const auto* const rule = change.key<BgpParseExtCommSubTypeTransOpaqueRuleKey>().rule();
    EXPECT_EQ("BgpParseExtCommTransOpaqueRule", rule->fwkType().name());
    EXPECT_LT(0U, rule->references());
    kept = Kiv::Ptr<const BgpParseExtCommTransOpaqueRule>(rule);
  };
  const BgpParseExtCommControl control(registry);
  bgpParseExtCommRuleIs<BgpParseExtCommTransOpaqueRule>(control);
  EXPECT_EQ(Heard{134}, ear.attributes);
  kept = nullptr;
  EXPECT_EQ((Heard{134, 134}), ear.attributes);
  ASSERT_TRUE(kept) << "taken while it was withdrawn";
  EXPECT_EQ(1U, BgpParseExtCommTransOpaqueRule::kivType().objects());
  EXPECT_EQ(0U, registry->extendedCommSubTypeTransOpaqueRuleInstance().size());
  kept->inhale(pluginColor);
  ear.then = nullptr;
  kept = nullptr;
  EXPECT_EQ((Heard{134, 134}), ear.attributes) << "it was no longer announced";
  EXPECT_EQ(0U, BgpParseExtCommTransOpaqueRule::kivType().objects());
}

// Constructors announce rules without the help of bgpParseExtCommRuleIs().
TEST(Announcing, ConstructorsBuildWholeTrees) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto plugin = bgpParseExtCommColorSmFactory(registry);
  Ear ear(*registry);
  BgpParseExtendedCommunityRule::Ptr root(
      new BgpParseExtendedCommunityRule(BgpParseExtCommControl(registry)));
  EXPECT_EQ(announcements(130, 131, 143), ear.attributes);
  EXPECT_EQ("ExtCommColor", classOf(*root, pluginColor));
  EXPECT_EQ(1U, root->references());
  root = nullptr;
  EXPECT_EQ(2U * 13U, ear.attributes.size());
}

TEST(Announcing, Ip6NonTransitiveIsNeverAnnounced) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  Ear ear(*registry);
  const auto rule =
      bgpParseExtCommRuleIs<BgpParseExtCommIp6NonTransRule>(BgpParseExtCommControl(registry));
  EXPECT_EQ(Heard{}, ear.attributes);
  const BgpParseExtCommIp6SubTypeNonTransRuleKey key(rule.ptr());
  // Initialisation removes a key of the rule that somebody else has inserted.
  registry->extendedCommIp6SubTypeNonTransRuleInstanceIs(key);
  rule->handleInitialized();
  EXPECT_FALSE(registry->extendedCommIp6SubTypeNonTransRuleInstanceHas(key));
  EXPECT_EQ((Heard{143, 143}), ear.attributes);
}

TEST(Announcing, AnObserverThatThrowsLeavesNothingBehind) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl control(registry);
  Ear ear(*registry);
  Ear behind(*registry);
  ear.then = [](const Kiv::Change& change) {
    if (change.attribute() == 134) throw 1;
  };
  EXPECT_THROW(bgpParseExtCommRuleIs<BgpParseExtCommTransOpaqueRule>(control), int);
  EXPECT_EQ((Heard{134, 134}), ear.attributes);
  EXPECT_EQ(Heard{}, behind.attributes) << "neither the announcement nor its undoing";
  EXPECT_THROW(bgpParseExtendedCommunityRuleFactory(control), int);
  EXPECT_EQ((Heard{131, 132, 133, 131, 132, 133}), behind.attributes);
  EXPECT_EQ(0U, registry->extendedCommSubTypeTransTwoOctetAsRuleInstance().size());
  EXPECT_EQ(0U, BgpParseExtCommTransTwoOctetAsRule::kivType().objects());
  EXPECT_EQ(0U, BgpParseExtendedCommunityRule::kivType().objects());
  // At a withdrawal the observers behind are notified all the same.
  ear.then = nullptr;
  auto root = bgpParseExtendedCommunityRuleFactory(control);
  ear.then = [](const Kiv::Change&) { throw 1; };
  behind.attributes.clear();
  root = nullptr;
  EXPECT_EQ(13U, behind.attributes.size());
  EXPECT_EQ(0U, registry->extendedCommSubTypeTransOpaqueRuleInstance().size());
}

// A rule of an application that initialises itself, and can be declared on the stack.
class OwnRule final : public BgpParseExtCommRuleBase {
  KIV_OBJECT(OwnRule)

 public:
  OwnRule() : BgpParseExtCommRuleBase(BgpParseExtCommControl()) { constructed(); }
};
KIV_OBJECT_DEFINE(OwnRule)

// A rule that is destroyed without being withdrawn would leave its key behind.
TEST(AnnouncingDeathTest, OnlyTheReferenceCountDestroysRules) {
  static_assert(!std::is_destructible_v<BgpParseExtendedCommunityRule>);
  static_assert(!std::is_destructible_v<BgpParseExtComSubTypeTransOpaqueColorRule>);
  static_assert(!std::is_destructible_v<BgpParseExtCommRuleCollections>);
  static_assert(!std::is_destructible_v<BgpParseExtCommPluginBaseSm>);
  static_assert(!std::is_destructible_v<BgpParseExtCommColorSm>);
  static_assert(!std::is_destructible_v<BgpParseExtCommContainerSm>);
  const Kiv::Ptr<OwnRule> counted(new OwnRule);
  EXPECT_DEATH(OwnRule(), "!hasBegun_ .. hasEnded_.*OvBgp/Parse/ExtComm");
}

TEST(Plugin, LeavesGoWithTheirNode) {
  const Kiv::Type& leaves = BgpParseExtComSubTypeTransOpaqueColorRule::kivType();
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto plugin = bgpParseExtCommColorSmFactory(registry);
  auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_EQ(1U, leaves.objects());
  root = nullptr;
  EXPECT_EQ(0U, leaves.objects()) << "one more was made when the node went, and went with it";
}

// A color plugin that is created after the tree, switched off and on, stopped, and destroyed.
TEST(Plugin, CatchesUpWhenItIsLateAndStopsWhenTold) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl control(registry);
  const auto early = bgpParseExtendedCommunityRuleFactory(control);
  EXPECT_EQ("ExtCommSubtyped", classOf(*early, pluginColor));
  auto plugin = BgpParseExtCommColorSmIs(registry);
  EXPECT_EQ("ExtCommColor", classOf(*early, pluginColor));
  plugin->hasNotificationActiveIs(false);
  const auto missed = bgpParseExtendedCommunityRuleFactory(control);
  EXPECT_EQ("ExtCommSubtyped", classOf(*missed, pluginColor));
  plugin->hasNotificationActiveIs(true);
  plugin->handleStartup();
  EXPECT_EQ("ExtCommColor", classOf(*missed, pluginColor));
  plugin->ruleCollectionsDel();
  EXPECT_FALSE(plugin->ruleCollections());
  plugin->handleStartup();
  EXPECT_EQ("ExtCommSubtyped",
            classOf(*bgpParseExtendedCommunityRuleFactory(control), pluginColor));
  EXPECT_EQ(0U, registry->notifieeList()->size());
  plugin = bgpParseExtCommColorSmFactory(registry);
  EXPECT_EQ(1U, registry->notifieeList()->size());
  plugin = nullptr;
  EXPECT_EQ(0U, registry->notifieeList()->size());
  EXPECT_EQ("ExtCommColor", classOf(*early, pluginColor)) << "its leaves outlive it";
}

template <class... Plugin>
std::vector<BgpParseExtCommPluginBaseSm::Ptr> constructed(const Collections::Ptr& registry) {
  return {Kiv::Ptr<Plugin>(new Plugin(registry))...};
}

TEST(Plugin, ConstructorsServeNodesOfBeforeAndAfter) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto early = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  const auto plugins =
      constructed<BgpParseExtCommRouteOriginSm, BgpParseExtCommRouteTargetSm,
                  BgpParseExtCommTunnelEncapSm, BgpParseExtCommDefaultGatewaySm,
                  BgpParseExtCommLinkBandwidthSm, BgpParseExtCommColorSm,
                  BgpParseExtCommOriginValidationStateSm, BgpParseExtCommPluginBaseSm>(registry);
  const auto late = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  for (U64 kind = 0; kind <= 0xffff; ++kind) {
    const ExtCommContent content(kind << 48);
    const std::string_view expected = classOf(*container->extCommParser(), content);
    ASSERT_EQ(expected, classOf(*early, content));
    ASSERT_EQ(expected, classOf(*late, content));
  }
}

// A type rule for EVPN, a type for which the library has no type rule.
class EvpnRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(EvpnRule)

 public:
  EvpnRule(const BgpParseExtCommControl& control, BgpExtCommPktType type)
      : BgpParseExtendedCommunityTypeRuleBase(control, type) {}
  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    return extCommFactory(extCommClassificationEvpn, content);
  }
};
KIV_OBJECT_DEFINE(EvpnRule)

// A plugin that serves the root: it adds an EVPN rule and replaces the opaque rule.
class RootPlugin final : public BgpParseExtCommPluginBaseSm {
 public:
  using BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm;
  void instantiateExtendedCommunityTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& key,
      const BgpParseExtCommControl& control) const override {
    for (const auto type : {extCommPktTypeTransEvpn, extCommPktTypeTransOpaque}) {
      addExtendedCommunityTypeSubRule(key, Kiv::Ptr<EvpnRule>(new EvpnRule(control, type)));
    }
  }
};

TEST(Plugin, MayAddAndReplaceTypeRules) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl control(registry);
  for (const bool late : {false, true}) {
    SCOPED_TRACE(late);
    Kiv::Ptr<RootPlugin> plugin;
    if (!late) plugin = bgpParseExtCommPluginIs<RootPlugin>(registry);
    // RootPlugin replaces the opaque rule. The withdrawal of the old rule notifies the color
    // plugin, which adds a leaf to a rule that is about to be destroyed.
    const auto color = bgpParseExtCommColorSmFactory(registry);
    auto root = bgpParseExtendedCommunityRuleFactory(control);
    if (late) plugin = bgpParseExtCommPluginIs<RootPlugin>(registry);
    for (const ExtCommContent& content : {evpnContent, pluginColor}) {
      EXPECT_EQ(extCommClassificationEvpn, root->parseExtendedCommunity(content)->classification());
    }
    EXPECT_EQ(0U, registry->extendedCommSubTypeTransOpaqueRuleInstance().size());
    EXPECT_EQ(1U, registry->extendedCommSubTypeTransGenericRuleInstance().size());
    root = nullptr;
    EXPECT_EQ(0U, EvpnRule::kivType().objects());
  }
}

// A plugin that counts its operations and runs `then`, which may change the tree, in one of them.
class BusyPlugin final : public BgpParseExtCommPluginBaseSm {
 public:
  using BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm;
  void instantiateExtCommSubTypeTransTwoOctetAsSubRule(
      const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey&,
      const BgpParseExtCommControl&) const override {
    ++served;
    if (then) then();
  }
  void instantiateExtCommIp6SubTypeTransSubRule(const BgpParseExtCommIp6SubTypeTransRuleKey&,
                                                const BgpParseExtCommControl&) const override {
    ++servedIp6;
  }
  void instantiateExtCommIp6SubTypeNonTransSubRule(const BgpParseExtCommIp6SubTypeNonTransRuleKey&,
                                                   const BgpParseExtCommControl&) const override {
    ADD_FAILURE() << "this node is never announced";
  }
  mutable int served = 0;
  mutable int servedIp6 = 0;
  std::function<void()> then;
};

// Overrides an operation where &Plugin::operation is not accessible.
class HiddenPlugin : public BgpParseExtCommPluginBaseSm {
 public:
  using BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm;
  mutable int served = 0;

 private:
  void instantiateExtCommSubTypeTransOpaqueSubRule(const BgpParseExtCommSubTypeTransOpaqueRuleKey&,
                                                   const BgpParseExtCommControl&) const override {
    ++served;
  }
};
// Inherits the override.
class HeirPlugin final : public HiddenPlugin {
 public:
  using HiddenPlugin::HiddenPlugin;
};

// A handler looks at the node of its key only if the plugin overrides the operation. The keys here
// name no node.
TEST(Plugin, LooksOnlyAtNodesThatItServes) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommSubTypeTransGenericRuleKey genericKey;
  const BgpParseExtendedCommunityRuleKey rootKey;
  registry->extendedCommSubTypeTransGenericRuleInstanceIs(genericKey);
  const auto heir = bgpParseExtCommPluginIs<HeirPlugin>(registry);
  const std::vector<BgpParseExtCommPluginBaseSm::Ptr> plugins = {
      heir, BgpParseExtCommPluginBaseSmIs(registry), bgpParseExtCommColorSmFactory(registry),
      BgpParseExtCommPluginBaseSm::Ptr(new BgpParseExtCommRouteTargetSm(registry))};
  for (const auto& plugin : plugins) {
    plugin->handleStartup();
    plugin->handleExtCommSubTypeTransGenericRuleInstance(genericKey);
    plugin->handleExtendedCommunityTypeRuleInstance(rootKey);
  }
  registry->extendedCommunityTypeRuleInstanceIs(rootKey);
  EXPECT_EQ(0, heir->served);
  const auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_EQ(1, heir->served);
}

TEST(Plugin, CallsNoNodeThatWentDuringTheReplay) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const BgpParseExtCommControl control(registry);
  std::vector<BgpParseExtendedCommunityRule::Ptr> roots;
  for (int i = 0; i < 4; ++i) roots.push_back(bgpParseExtendedCommunityRuleFactory(control));
  const auto plugin = bgpParseExtCommPluginIs<BusyPlugin>(registry);
  EXPECT_EQ(4, plugin->served);
  EXPECT_EQ(4, plugin->servedIp6);
  plugin->served = 0;
  plugin->then = [&roots, &plugin] {
    plugin->then = nullptr;
    roots.clear();
  };
  plugin->handleStartup();
  EXPECT_EQ(1 + 4, plugin->served) << "one by the replay, all when they went";
}

TEST(Plugin, MayEndInItsOwnOperation) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto color = bgpParseExtCommColorSmFactory(registry);
  auto plugin = bgpParseExtCommPluginIs<BusyPlugin>(registry);
  const auto alsoColor = bgpParseExtCommColorSmFactory(registry);
  plugin->then = [&plugin] { plugin = nullptr; };
  const auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  EXPECT_FALSE(plugin);
  EXPECT_EQ("ExtCommColor", classOf(*root, pluginColor));
  EXPECT_EQ(2U, registry->notifieeList()->size());
}

TEST(Plugin, TracesItsOperations) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto plugin = bgpParseExtCommRouteTargetSmFactory(registry);
  std::vector<Kiv::String> lines;
  Kiv::traceSinkIs([&lines](std::string_view line) { lines.emplace_back(line); });
  Kiv::traceLevelsIs("BgpParse/8");
  auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  Kiv::traceLevelsIs("");
  Kiv::traceSinkIs(nullptr);
  ASSERT_EQ(3U, lines.size());
  EXPECT_NE(Kiv::String::npos, lines[0].find("BgpParse/8 ExtCommRouteTargetSm.cpp:"));
  EXPECT_NE(Kiv::String::npos,
            lines[0].find(" instantiateExtCommSubTypeTransTwoOctetAsSubRule plugin 0x"));
}

TEST(PluginDeathTest, AddsNoNull) {
  const Collections::Ptr registry = bgpParseExtCommRuleCollectionsFactory();
  const auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
  const auto plugin = BgpParseExtCommPluginBaseSmIs(registry);
  const BgpParseExtendedCommunityRuleKey key(root.ptr());
  EXPECT_DEATH(plugin->addExtendedCommunityTypeSubRule(key, nullptr),
               "__null != rule.*OvBgp/Parse/ExtComm.*addExtendedCommunityTypeSubRule");
  const BgpParseExtCommSubTypeTransOpaqueRuleKey opaque;
  EXPECT_DEATH(plugin->addExtCommSubTypeTransOpaqueSubRule(opaque, nullptr),
               "rule != __null.*OvBgp/Parse/ExtComm.*addExtCommSubTypeTransOpaqueSubRule");
  const BgpParseExtCommIp6SubTypeNonTransRuleKey ip6;
  EXPECT_DEATH(plugin->addExtCommIp6SubTypeNonTransSubRule(ip6, nullptr), "rule != __null");
}

}  // namespace
