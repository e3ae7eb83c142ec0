// Tests of the container: what it creates, and the operations of its plugin queue.
#include <gtest/gtest.h>

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "Kiv/Exception.h"
#include "OvBgp/Parse/ExtComm.h"
#include "tests/AllKinds.h"

namespace {

using namespace Routing::Bgp;

const ExtCommContent colorContent(0x030b'0000'0000'0001);

std::vector<std::string_view> pluginsOf(const BgpParseExtCommContainerSm& container) {
  std::vector<std::string_view> names;
  for (U32 i = 0; i < container.extCommParserSms(); ++i) {
    names.push_back(container.extCommParserSms(i)->fwkType().name());
  }
  return names;
}

TEST(Container, StartsWithAllItsParts) {
  const auto container = bgpParseExtCommContainerSmFactory();
  EXPECT_EQ((std::vector<std::string_view>{
                "BgpParseExtCommRouteOriginSm", "BgpParseExtCommRouteTargetSm",
                "BgpParseExtCommTunnelEncapSm", "BgpParseExtCommDefaultGatewaySm",
                "BgpParseExtCommLinkBandwidthSm", "BgpParseExtCommColorSm",
                "BgpParseExtCommOriginValidationStateSm"}),
            pluginsOf(*container));
  EXPECT_TRUE(container->hasNotificationActive());
  EXPECT_EQ(BgpParseExtCommControl(container->parseExtCommRuleCollections()),
            container->extCommParser()->parseControl());
  EXPECT_EQ("", container->extCommCache()->lookup(1, false));
}

TEST(Container, LeavesNothingBehind) {
  const U64 before = AllKinds::objectsAlive();
  bgpParseExtCommContainerSmFactory();
  EXPECT_EQ(before, AllKinds::objectsAlive());
}

TEST(Container, KeepsTheRootForAnEqualControl) {
  const auto container = bgpParseExtCommContainerSmFactory();
  const auto first = container->extCommParser();
  const auto registry = container->parseExtCommRuleCollections();
  EXPECT_TRUE(first == container->extCommParserIs(BgpParseExtCommControl(registry)));
  // No plugin observes the new registry, so the new tree has no leaves. The old tree keeps its own.
  EXPECT_FALSE(registry == container->parseExtCommRuleCollectionsIs());
  const auto second =
      container->extCommParserIs(BgpParseExtCommControl(container->parseExtCommRuleCollections()));
  EXPECT_FALSE(first == second);
  EXPECT_EQ("ExtCommColor", first->parseExtendedCommunity(colorContent)->fwkType().name());
  EXPECT_EQ("ExtCommSubtyped", second->parseExtendedCommunity(colorContent)->fwkType().name());
  container->extCommParserDel();
  EXPECT_FALSE(container->extCommParser());
  container->parseExtCommRuleCollectionsDel();
  EXPECT_FALSE(container->parseExtCommRuleCollections());
  EXPECT_TRUE(container->extCommParserIs(BgpParseExtCommControl(registry)));
  EXPECT_EQ(2U, registry->extendedCommunityTypeRuleInstance().size());
}

TEST(Container, TheTreeKeepsTheLeavesOfAPluginThatLeft) {
  const auto container = bgpParseExtCommContainerSmFactory();
  EXPECT_TRUE(container->extCommParserSmsDel(5));
  EXPECT_EQ(0U, BgpParseExtCommColorSm::kivType().objects());
  EXPECT_EQ("ExtCommColor",
            container->extCommParser()->parseExtendedCommunity(colorContent)->fwkType().name());
  container->extCommParserDel();
  container->extCommParserIs(BgpParseExtCommControl(container->parseExtCommRuleCollections()));
  EXPECT_EQ("ExtCommSubtyped",
            container->extCommParser()->parseExtendedCommunity(colorContent)->fwkType().name());
}

TEST(Container, QueueOfPlugins) {
  const auto container = bgpParseExtCommContainerSmFactory();
  container->extCommParserSmsDelAll();
  EXPECT_EQ(0U, container->extCommParserSms());
  EXPECT_EQ(0U, container->parseExtCommRuleCollections()->notifieeList()->size());
  EXPECT_FALSE(container->extCommParserSmsFront());
  EXPECT_FALSE(container->extCommParserSmsBack());
  EXPECT_FALSE(container->extCommParserSmsDeq());
  EXPECT_FALSE(container->extCommParserSmsDel(0));
  const BgpParseExtCommContainerSm::PluginPtr a = BgpParseExtCommPluginBaseSmIs(nullptr);
  const BgpParseExtCommContainerSm::PluginPtr b = BgpParseExtCommPluginBaseSmIs(nullptr);
  const BgpParseExtCommContainerSm::PluginPtr c = BgpParseExtCommPluginBaseSmIs(nullptr);
  container->extCommParserSmsEnq(a);
  container->extCommParserSmsIs(1, b);
  EXPECT_TRUE(container->extCommParserSmsFront() == a);
  EXPECT_TRUE(container->extCommParserSmsBack() == b);
  container->extCommParserSmsIs(0, c);
  EXPECT_EQ(1U, a->references());
  EXPECT_THROW(container->extCommParserSmsIs(3, a), Kiv::RangeException);
  EXPECT_THROW(container->extCommParserSmsIs(0, nullptr), Kiv::NullArgumentException);
  EXPECT_THROW(container->extCommParserSmsEnq(nullptr), Kiv::NullArgumentException);
  EXPECT_FALSE(container->extCommParserSms(2));
  EXPECT_TRUE(container->extCommParserSmsDeq() == c);
  EXPECT_TRUE(container->extCommParserSmsDeq() == b);
  EXPECT_EQ(0U, container->extCommParserSms());
}

// A plugin whose destructor runs a function.
class LastWordPlugin final : public BgpParseExtCommPluginBaseSm {
 public:
  explicit LastWordPlugin(std::function<void()> last)
      : BgpParseExtCommPluginBaseSm(nullptr), last_(std::move(last)) {}
  ~LastWordPlugin() override { last_(); }

 private:
  const std::function<void()> last_;
};

// Every operation that releases a plugin, with a destructor that empties the queue and appends a
// plugin.
TEST(Container, ADestructorOfAPluginMayUseTheQueue) {
  using Container = BgpParseExtCommContainerSm;
  const std::vector<std::pair<const char*, std::function<void(Container&)>>> releases = {
      {"all", [](Container& container) { container.extCommParserSmsDelAll(); }},
      {"one", [](Container& container) { EXPECT_TRUE(container.extCommParserSmsDel(3)); }},
      {"the first",
       [](Container& container) {
         for (int i = 0; i < 4; ++i) container.extCommParserSmsDeq();
       }},
      {"a replaced one",
       [](Container& container) {
         container.extCommParserSmsIs(3, BgpParseExtCommPluginBaseSmIs(nullptr));
       }},
      {"the container", [](Container&) {}},
  };
  for (const auto& [name, release] : releases) {
    SCOPED_TRACE(name);
    Container::Ptr container = bgpParseExtCommContainerSmFactory();
    Container& raw = *container;
    int destroyed = 0;
    const auto lastWord = [&raw, &destroyed] {
      ++destroyed;
      raw.extCommParserSmsDelAll();
      raw.extCommParserSmsEnq(BgpParseExtCommPluginBaseSmIs(nullptr));
    };
    raw.extCommParserSmsIs(3, Kiv::Ptr<LastWordPlugin>(new LastWordPlugin(lastWord)));
    release(raw);
    if (destroyed != 0) {
      EXPECT_EQ(std::vector<std::string_view>{"BgpParseExtCommPluginBaseSm"}, pluginsOf(raw));
    }
    container = nullptr;
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(0U, BgpParseExtCommPluginBaseSm::kivType().objects());
  }
}

}  // namespace
