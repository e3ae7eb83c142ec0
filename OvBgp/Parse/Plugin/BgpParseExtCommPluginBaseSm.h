// The base of plugins: those who add to the rule tree, wherever it has room for
// what they know.
#ifndef OVBGP_PARSE_PLUGIN_BGPPARSEEXTCOMMPLUGINBASESM_H
#define OVBGP_PARSE_PLUGIN_BGPPARSEEXTCOMMPLUGINBASESM_H

#include "Kiv/Assert.h"
#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleKeys.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommTypeRules.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {

// A new plugin of class `Plugin`, with notification switched on, that has served
// all nodes that exist.
template <class Plugin>
Kiv::Ptr<Plugin> bgpParseExtCommPluginIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  Kiv::Ptr<Plugin> plugin(new Plugin(collections));
  plugin->hasNotificationActiveIs(true);
  plugin->begin();
  return plugin;
}

// Declares what belongs to one kind of type rule. The names are arguments, in full,
// so that a search for one finds its line.
#define SUBTYPE_OPERATIONS(Kind, instantiate, add, handle)                                  \
 public:                                                                                    \
  virtual void instantiate(const Kind::Key&, const BgpParseExtCommControl&) const {}        \
  void add(const Kind::Key& key, const Kiv::Ptr<const Kind::SubtypeRuleBase>& rule) const { \
    KIV_ASSERT(rule, "rule != __null", "OvBgp/Parse/ExtComm");                              \
    key.rule()->subTypeRuleIs(rule);                                                        \
  }                                                                                         \
  void handle(const Kind::Key& key) const { instantiate(key, key.rule()->parseControl()); } \
  void handle() const { handleInstances(Kind{}); }                                          \
                                                                                            \
 private:                                                                                   \
  void handleInstance(const Kind::Key& key) const { handle(key); }

// Watches a registry. For each node that is announced (or withdrawn: a plugin does
// not tell these apart, see below) it runs the operation of that kind of node:
//   instantiate...SubRule(key, control)   makes a rule and adds it to key.rule();
//                                         a plugin overrides those for its kinds,
//                                         and the others do nothing
//   add...SubRule(key, rule)              what it adds it with; `rule` is not null
//   handle...RuleInstance(key)            runs the operation for one node
//   handle...RuleInstance()               ... for each that is announced now
// What is added to a node that is being withdrawn goes with it at once. What has
// been added stays until then, even if the plugin goes.
// What an operation throws ends the building of the node; it is lost if the node is
// being withdrawn.
//
// Make plugins of your own with bgpParseExtCommPluginIs, unless their constructor says
// constructed(), as the library's do. A plugin hears while its notification is on;
// handleStartup() makes up for what it missed. Unregisters when it goes.
// Holds a reference to the registry, which holds none to it. Owner thread only.
class OV_EXPORT BgpParseExtCommPluginBaseSm : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommPluginBaseSm)

 public:
  explicit BgpParseExtCommPluginBaseSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : ruleCollections_(*this, collections) {}

  // Runs the operations for all nodes that are announced now, in the registry's order.
  void handleStartup() const;

  // Null once it has been told to stop watching.
  const Kiv::Ptr<const BgpParseExtCommRuleCollections>& ruleCollections() const noexcept {
    return ruleCollections_.collections();
  }
  void ruleCollectionsDel() { ruleCollections_.collectionsIs(nullptr); }

  virtual void instantiateExtendedCommunityTypeSubRule(const BgpParseExtendedCommunityRuleKey&,
                                                       const BgpParseExtCommControl&) const {}
  void addExtendedCommunityTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& key,
      const Kiv::Ptr<const BgpParseExtendedCommunityTypeRuleBase>& rule) const {
    KIV_ASSERT(rule, "__null != rule", "OvBgp/Parse/ExtComm");
    key.rule()->typeRuleIs(rule);
  }
  void handleExtendedCommunityTypeRuleInstance(const BgpParseExtendedCommunityRuleKey& key) const {
    instantiateExtendedCommunityTypeSubRule(key, key.rule()->parseControl());
  }
  void handleExtendedCommunityTypeRuleInstance() const { handleInstances(BgpParseKindRoot{}); }

  SUBTYPE_OPERATIONS(BgpParseKindTransTwoOctetAs, instantiateExtCommSubTypeTransTwoOctetAsSubRule,
                     addExtCommSubTypeTransTwoOctetAsSubRule,
                     handleExtCommSubTypeTransTwoOctetAsRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransIpv4Address, instantiateExtCommSubTypeTransIpv4AddressSubRule,
                     addExtCommSubTypeTransIpv4AddressSubRule,
                     handleExtCommSubTypeTransIpv4AddressRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransFourOctetAs, instantiateExtCommSubTypeTransFourOctetAsSubRule,
                     addExtCommSubTypeTransFourOctetAsSubRule,
                     handleExtCommSubTypeTransFourOctetAsRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule,
                     addExtCommSubTypeTransOpaqueSubRule,
                     handleExtCommSubTypeTransOpaqueRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransGeneric, instantiateExtCommSubTypeTransGenericSubRule,
                     addExtCommSubTypeTransGenericSubRule,
                     handleExtCommSubTypeTransGenericRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransGenericPart2,
                     instantiateExtCommSubTypeTransGenericPart2SubRule,
                     addExtCommSubTypeTransGenericPart2SubRule,
                     handleExtCommSubTypeTransGenericPart2RuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindTransGenericPart3,
                     instantiateExtCommSubTypeTransGenericPart3SubRule,
                     addExtCommSubTypeTransGenericPart3SubRule,
                     handleExtCommSubTypeTransGenericPart3RuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindNonTransTwoOctetAs,
                     instantiateExtCommSubTypeNonTransTwoOctetAsSubRule,
                     addExtCommSubTypeNonTransTwoOctetAsSubRule,
                     handleExtCommSubTypeNonTransTwoOctetAsRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindNonTransIpv4Address,
                     instantiateExtCommSubTypeNonTransIpv4AddressSubRule,
                     addExtCommSubTypeNonTransIpv4AddressSubRule,
                     handleExtCommSubTypeNonTransIpv4AddressRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindNonTransFourOctetAs,
                     instantiateExtCommSubTypeNonTransFourOctetAsSubRule,
                     addExtCommSubTypeNonTransFourOctetAsSubRule,
                     handleExtCommSubTypeNonTransFourOctetAsRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindNonTransOpaque, instantiateExtCommSubTypeNonTransOpaqueSubRule,
                     addExtCommSubTypeNonTransOpaqueSubRule,
                     handleExtCommSubTypeNonTransOpaqueRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindIp6Trans, instantiateExtCommIp6SubTypeTransSubRule,
                     addExtCommIp6SubTypeTransSubRule, handleExtCommIp6SubTypeTransRuleInstance)
  SUBTYPE_OPERATIONS(BgpParseKindIp6NonTrans, instantiateExtCommIp6SubTypeNonTransSubRule,
                     addExtCommIp6SubTypeNonTransSubRule,
                     handleExtCommIp6SubTypeNonTransRuleInstance)

 protected:
  // The last that the constructor of a final class calls: serves all nodes that exist.
  void constructed();

 private:
  template <class Plugin>
  friend Kiv::Ptr<Plugin> bgpParseExtCommPluginIs(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

  // Runs handleStartup(), once.
  void begin();

  // What hears of the registry's changes.
  class OV_EXPORT KivRuleCollections final : public Kiv::Notifiee {
   public:
    KivRuleCollections(const BgpParseExtCommPluginBaseSm& plugin,
                       const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
        : plugin_(plugin) {
      collectionsIs(collections);
    }

    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections() const noexcept {
      return collections_;
    }
    void collectionsIs(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
      notifierIs(collections ? collections->notifieeList() : nullptr);
      collections_ = collections;
    }
    void handleChange(const Kiv::Change& change) override { plugin_.handleChange(change); }

   private:
    const BgpParseExtCommPluginBaseSm& plugin_;
    Kiv::Ptr<const BgpParseExtCommRuleCollections> collections_;
  };

  void handleChange(const Kiv::Change& change) const;
  template <class... Kind>
  void handleChangeOf(BgpParseKindList<Kind...> kinds, const Kiv::Change& change) const;
  template <class... Kind>
  void handleInstancesOf(BgpParseKindList<Kind...> kinds) const;

  void handleInstance(const BgpParseExtendedCommunityRuleKey& key) const {
    handleExtendedCommunityTypeRuleInstance(key);
  }
  template <class Kind>
  void handleInstances(Kind kind) const;

  KivRuleCollections ruleCollections_;
  bool hasBegun_ = false;
};
#undef SUBTYPE_OPERATIONS

// A plugin that adds nothing.
OV_EXPORT BgpParseExtCommPluginBaseSm::Ptr BgpParseExtCommPluginBaseSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

// Operations may make nodes come and go, and let go of the plugin. A node that has
// gone is not called.
template <class Kind>
void BgpParseExtCommPluginBaseSm::handleInstances(Kind) const {
  const PtrConst self(this);
  const auto collections = ruleCollections();
  if (!collections) return;
  const auto& instances = collections->keysOf<Kind>();
  for (const auto& key : instances.keys()) {
    if (instances.has(key)) handleInstance(key);
  }
}

}  // namespace Routing::Bgp

#endif
