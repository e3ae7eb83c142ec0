// BgpParseExtCommPluginBaseSm: the base class of plugins, which add rules to the rule tree.
//
// `Sm` stands for state machine: an object that observes others and reacts to their changes. A
// plugin observes the registry and reacts to every announced node of the kinds that it serves.
#ifndef OVBGP_PARSE_PLUGIN_BGPPARSEEXTCOMMPLUGINBASESM_H
#define OVBGP_PARSE_PLUGIN_BGPPARSEEXTCOMMPLUGINBASESM_H

#include <type_traits>

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

// Returns a new plugin of class `Plugin` with notification on, after it has served all nodes that
// are announced now. `collections` may be null; the plugin then observes nothing. Throws
// std::bad_alloc, and what the plugin's operations throw.
template <class Plugin>
Kiv::Ptr<Plugin> bgpParseExtCommPluginIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  Kiv::Ptr<Plugin> plugin(new Plugin(collections));
  plugin->hasNotificationActiveIs(true);
  plugin->template servedAre<Plugin>();
  plugin->begin();
  return plugin;
}

// Declares the operations of one kind of type rule. All names are spelled out as arguments, so that
// a text search for a name finds it.
#define SUBTYPE_OPERATIONS(Kind, instantiate, add, handle)                                  \
 public:                                                                                    \
  /* Runs for each announced or withdrawn node of this kind. A plugin that serves the   */  \
  /* kind overrides it, builds a leaf with the node's control and passes it to add.     */  \
  /* The default does nothing.                                                          */  \
  virtual void instantiate(const Kind::Key&, const BgpParseExtCommControl&) const {}        \
  /* Stores the leaf `rule`, which must not be null, in the node of `key`.              */  \
  void add(const Kind::Key& key, const Kiv::Ptr<const Kind::SubtypeRuleBase>& rule) const { \
    KIV_ASSERT(rule, "rule != __null", "OvBgp/Parse/ExtComm");                              \
    key.rule()->subTypeRuleIs(rule);                                                        \
  }                                                                                         \
  /* Runs the operation for the node of `key`, with the node's own control. Does not    */  \
  /* look at the node if the plugin's class does not override the operation.            */  \
  void handle(const Kind::Key& key) const {                                                 \
    if (isServed<Kind>()) instantiate(key, key.rule()->parseControl());                     \
  }                                                                                         \
  /* Runs the operation for each node of this kind that is announced now.               */  \
  void handle() const { handleInstances(Kind{}); }                                          \
                                                                                            \
 private:                                                                                   \
  void handleInstance(const Kind::Key& key) const { handle(key); }                          \
  template <class Plugin>                                                                   \
  static constexpr bool inherits(Kind) {                                                    \
    return requires {                                                                       \
      requires std::is_same_v<decltype(&Plugin::instantiate),                               \
                              decltype(&BgpParseExtCommPluginBaseSm::instantiate)>;         \
    };                                                                                      \
  }

// Observes a registry and serves its nodes. For each kind of node there are four functions:
//   instantiate...SubRule(key, control)   the operation: builds a rule and adds it to key.rule().
//                                         A plugin overrides the operations of its kinds
//   add...SubRule(key, rule)              called by the operation to add its rule
//   handle...RuleInstance(key)            calls the operation for one node; called for each
//                                         notification of the registry
//   handle...RuleInstance()               calls the operation for each announced node; called by
//                                         handleStartup()
//
// A plugin does not distinguish announcement and withdrawal. Rules added to a node during its
// withdrawal are destroyed with it. Rules added earlier live until the node is withdrawn, also
// after the plugin is destroyed. An exception from an operation aborts the construction of the
// node; during a withdrawal the exception is traced. Kiv/NotifieeList.h has the rule.
//
// Create plugins with bgpParseExtCommPluginIs(), unless the constructor of their class calls
// constructed(), as the library's plugins do. In both ways a new plugin has served the nodes that
// are announced and serves those that will be. A plugin is notified only while its own notification
// is on, as it is from the beginning; after a pause, handleStartup() serves the nodes that it
// missed.
//
// Operations that the class of a plugin does not override are never called. The class is known to
// bgpParseExtCommPluginIs() and to constructed<Plugin>(); if a plugin was created in another way,
// all operations are called, and the default ones do nothing.
//
// The plugin holds a reference to the registry, and the registry none to the plugin. The destructor
// unregisters the plugin. Owner thread only.
class OV_EXPORT BgpParseExtCommPluginBaseSm : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommPluginBaseSm)

 public:
  // Observes `collections` from now on, with notification on; null observes nothing. Does not serve
  // the nodes that are announced already, because the operations are virtual and the derived class
  // is not constructed.
  explicit BgpParseExtCommPluginBaseSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

  // Runs the operations for all announced nodes, in the order of the registry's collections. A rule
  // that an earlier run added is replaced by a new one.
  void handleStartup() const;

  // Returns the observed registry; null after ruleCollectionsDel().
  const Kiv::Ptr<const BgpParseExtCommRuleCollections>& ruleCollections() const noexcept {
    return ruleCollections_.collections();
  }
  // Stops observing and releases the registry. Rules already added stay in the tree.
  void ruleCollectionsDel() { ruleCollections_.collectionsIs(nullptr); }

  // Runs for each announced or withdrawn root. A plugin overrides it to add type rules, for example
  // for a type octet without a kind. The default does nothing.
  virtual void instantiateExtendedCommunityTypeSubRule(const BgpParseExtendedCommunityRuleKey&,
                                                       const BgpParseExtCommControl&) const {}
  // Stores the type rule `rule`, which must not be null, in the root of `key`.
  void addExtendedCommunityTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& key,
      const Kiv::Ptr<const BgpParseExtendedCommunityTypeRuleBase>& rule) const {
    KIV_ASSERT(rule, "__null != rule", "OvBgp/Parse/ExtComm");
    key.rule()->typeRuleIs(rule);
  }
  // Runs the operation for the root of `key`, with the root's own control. Does not look at the
  // root if the plugin's class does not override the operation.
  void handleExtendedCommunityTypeRuleInstance(const BgpParseExtendedCommunityRuleKey& key) const {
    if (isServed<BgpParseKindRoot>()) {
      instantiateExtendedCommunityTypeSubRule(key, key.rule()->parseControl());
    }
  }
  // Runs the operation for each root that is announced now.
  void handleExtendedCommunityTypeRuleInstance() const { handleInstances(BgpParseKindRoot{}); }

  // Transitive two-octet AS (0x00).
  SUBTYPE_OPERATIONS(BgpParseKindTransTwoOctetAs, instantiateExtCommSubTypeTransTwoOctetAsSubRule,
                     addExtCommSubTypeTransTwoOctetAsSubRule,
                     handleExtCommSubTypeTransTwoOctetAsRuleInstance)
  // Transitive IPv4 address (0x01).
  SUBTYPE_OPERATIONS(BgpParseKindTransIpv4Address, instantiateExtCommSubTypeTransIpv4AddressSubRule,
                     addExtCommSubTypeTransIpv4AddressSubRule,
                     handleExtCommSubTypeTransIpv4AddressRuleInstance)
  // Transitive four-octet AS (0x02).
  SUBTYPE_OPERATIONS(BgpParseKindTransFourOctetAs, instantiateExtCommSubTypeTransFourOctetAsSubRule,
                     addExtCommSubTypeTransFourOctetAsSubRule,
                     handleExtCommSubTypeTransFourOctetAsRuleInstance)
  // Transitive opaque (0x03).
  SUBTYPE_OPERATIONS(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule,
                     addExtCommSubTypeTransOpaqueSubRule,
                     handleExtCommSubTypeTransOpaqueRuleInstance)
  // Generic transitive (0x80).
  SUBTYPE_OPERATIONS(BgpParseKindTransGeneric, instantiateExtCommSubTypeTransGenericSubRule,
                     addExtCommSubTypeTransGenericSubRule,
                     handleExtCommSubTypeTransGenericRuleInstance)
  // Generic transitive part 2 (0x81).
  SUBTYPE_OPERATIONS(BgpParseKindTransGenericPart2,
                     instantiateExtCommSubTypeTransGenericPart2SubRule,
                     addExtCommSubTypeTransGenericPart2SubRule,
                     handleExtCommSubTypeTransGenericPart2RuleInstance)
  // Generic transitive part 3 (0x82).
  SUBTYPE_OPERATIONS(BgpParseKindTransGenericPart3,
                     instantiateExtCommSubTypeTransGenericPart3SubRule,
                     addExtCommSubTypeTransGenericPart3SubRule,
                     handleExtCommSubTypeTransGenericPart3RuleInstance)
  // Non-transitive two-octet AS (0x40).
  SUBTYPE_OPERATIONS(BgpParseKindNonTransTwoOctetAs,
                     instantiateExtCommSubTypeNonTransTwoOctetAsSubRule,
                     addExtCommSubTypeNonTransTwoOctetAsSubRule,
                     handleExtCommSubTypeNonTransTwoOctetAsRuleInstance)
  // Non-transitive IPv4 address (0x41).
  SUBTYPE_OPERATIONS(BgpParseKindNonTransIpv4Address,
                     instantiateExtCommSubTypeNonTransIpv4AddressSubRule,
                     addExtCommSubTypeNonTransIpv4AddressSubRule,
                     handleExtCommSubTypeNonTransIpv4AddressRuleInstance)
  // Non-transitive four-octet AS (0x42).
  SUBTYPE_OPERATIONS(BgpParseKindNonTransFourOctetAs,
                     instantiateExtCommSubTypeNonTransFourOctetAsSubRule,
                     addExtCommSubTypeNonTransFourOctetAsSubRule,
                     handleExtCommSubTypeNonTransFourOctetAsRuleInstance)
  // Non-transitive opaque (0x43).
  SUBTYPE_OPERATIONS(BgpParseKindNonTransOpaque, instantiateExtCommSubTypeNonTransOpaqueSubRule,
                     addExtCommSubTypeNonTransOpaqueSubRule,
                     handleExtCommSubTypeNonTransOpaqueRuleInstance)
  // Transitive IPv6 address (0x00 of 20-octet values).
  SUBTYPE_OPERATIONS(BgpParseKindIp6Trans, instantiateExtCommIp6SubTypeTransSubRule,
                     addExtCommIp6SubTypeTransSubRule, handleExtCommIp6SubTypeTransRuleInstance)
  // Non-transitive IPv6 address (0x40 of 20-octet values). Its rule never announces itself, so
  // the operation never runs.
  SUBTYPE_OPERATIONS(BgpParseKindIp6NonTrans, instantiateExtCommIp6SubTypeNonTransSubRule,
                     addExtCommIp6SubTypeNonTransSubRule,
                     handleExtCommIp6SubTypeNonTransRuleInstance)

 protected:
  // Called by the reference count only. Unregisters the plugin.
  ~BgpParseExtCommPluginBaseSm() override = default;

  // Serves all announced nodes. Call it at the end of the constructor of a final class, and nowhere
  // else, because it calls virtual functions. bgpParseExtCommPluginIs() then serves no node twice.
  void constructed();
  // Does the same, and records which operations the final class `Plugin` overrides.
  template <class Plugin>
  void constructed() {
    static_assert(std::is_final_v<Plugin>, "a derived class could override further operations");
    servedAre<Plugin>();
    constructed();
  }

 private:
  template <class Plugin>
  friend Kiv::Ptr<Plugin> bgpParseExtCommPluginIs(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

  // Runs handleStartup() unless constructed() has run it.
  void begin();

  // Whether `Plugin` inherits the operation of the kind. Overloads by kind, one here and one for
  // each type kind above. The type of a pointer to member names the class that declares the member.
  template <class Plugin>
  static constexpr bool inherits(BgpParseKindRoot) {
    return requires {
      requires std::is_same_v<
          decltype(&Plugin::instantiateExtendedCommunityTypeSubRule),
          decltype(&BgpParseExtCommPluginBaseSm::instantiateExtendedCommunityTypeSubRule)>;
    };
  }
  // The bit of `Kind` in served_.
  template <class Kind>
  static constexpr U32 servedBit = U32{1} << (Kind::attribute - BgpParseKindRoot::attribute);
  template <class Plugin, class... Kind>
  static constexpr U32 servedBy(BgpParseKindList<Kind...>) {
    return ((inherits<Plugin>(Kind{}) ? U32{0} : servedBit<Kind>) | ...);
  }
  // Records the operations that `Plugin`, the class of this object, overrides.
  template <class Plugin>
  void servedAre() {
    served_ = servedBy<Plugin>(BgpParseNodeKinds{});
  }
  template <class Kind>
  bool isServed() const {
    return (served_ & servedBit<Kind>) != 0;
  }

  // The observer of the registry: a member that forwards each change to the plugin.
  class OV_EXPORT KivRuleCollections final : public Kiv::Notifiee {
   public:
    // `plugin` owns this object, so there is no reference to it.
    KivRuleCollections(const BgpParseExtCommPluginBaseSm& plugin,
                       const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
        : plugin_(plugin) {
      collectionsIs(collections);
    }

    // Returns the observed registry; may be null.
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections() const noexcept {
      return collections_;
    }
    // Registers with `collections`, or unregisters if it is null. Changes the registration before
    // the reference, because the reference keeps the old registry alive until then.
    void collectionsIs(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
      notifierIs(collections ? collections->notifieeList() : nullptr);
      collections_ = collections;
    }
    // Called by the registry.
    void handleChange(const Kiv::Change& change) override { plugin_.handleChange(change); }

   private:
    const BgpParseExtCommPluginBaseSm& plugin_;
    Kiv::Ptr<const BgpParseExtCommRuleCollections> collections_;
  };

  // Calls handleInstance() for the key in `change`, if the plugin's notification is on.
  void handleChange(const Kiv::Change& change) const;
  // Selects the kind by the number of the collection.
  template <class... Kind>
  void handleChangeOf(BgpParseKindList<Kind...> kinds, const Kiv::Change& change) const;
  // Calls handleInstances() for each kind.
  template <class... Kind>
  void handleInstancesOf(BgpParseKindList<Kind...> kinds) const;

  // Overloads by key type, one here and one for each type kind above.
  void handleInstance(const BgpParseExtendedCommunityRuleKey& key) const {
    handleExtendedCommunityTypeRuleInstance(key);
  }
  // Calls handleInstance() for each announced node of one kind.
  template <class Kind>
  void handleInstances(Kind kind) const;

  KivRuleCollections ruleCollections_;
  // The kinds whose operations the class overrides; all of them until the class is known.
  U32 served_ = ~U32{0};
  bool hasBegun_ = false;
};
#undef SUBTYPE_OPERATIONS

// Begins the body of the plugin class `Plugin`: type record and constructor. The class must be
// final and derive from BgpParseExtCommPluginBaseSm. KIV_OBJECT_DEFINE(Plugin) belongs into a
// source file.
#define BGP_PARSE_PLUGIN_BODY(Plugin)                                                           \
  KIV_OBJECT(Plugin)                                                                            \
                                                                                                \
  /* Called by the reference count only. */                                                     \
  ~Plugin() override = default;                                                                 \
                                                                                                \
 public:                                                                                        \
  /* Observes `collections` and serves all nodes, those that are announced now and later;    */ \
  /* null does nothing.                                                                      */ \
  explicit Plugin(                                                                              \
      const ::Kiv::Ptr<const ::Routing::Bgp::BgpParseExtCommRuleCollections>& collections)      \
      : BgpParseExtCommPluginBaseSm(collections) {                                              \
    this->template constructed<Plugin>();                                                       \
  }

// Declares in a plugin class that it serves `Kind`, whose operation is `instantiate`.
#define BGP_PARSE_PLUGIN_SERVES(Kind, instantiate)                                              \
  void instantiate(const Kind::Key& key, const ::Routing::Bgp::BgpParseExtCommControl& control) \
      const override;

// Declares the two factories of a plugin class of the library. Each returns a new plugin with
// notification on that has served all announced nodes of `collections`, which may be null. A
// comment before the macro documents PluginIs().
#define BGP_PARSE_PLUGIN_FACTORIES(Plugin, PluginIs, pluginFactory)       \
  OV_EXPORT Plugin::Ptr PluginIs(                                         \
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections); \
  /* Does the same as PluginIs(). */                                      \
  OV_EXPORT Plugin::Ptr pluginFactory(                                    \
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)

// Returns a new plugin with notification on that observes `collections` and adds nothing.
OV_EXPORT BgpParseExtCommPluginBaseSm::Ptr BgpParseExtCommPluginBaseSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

// An operation may announce and withdraw nodes, and release the last reference to the plugin.
// Iterate over a copy of the keys, skip keys that have been removed meanwhile, and hold references
// to plugin and registry until the end.
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
