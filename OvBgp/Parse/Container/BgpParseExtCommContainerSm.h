// BgpParseExtCommContainerSm: the complete parser for extended communities. Applications start
// here.
//
// The container creates the registry, the library's plugins, the rule tree and the cache for show
// commands:
//
//   auto parser = bgpParseExtCommContainerSmFactory();
//   auto object = parser->extCommParser()->parseExtendedCommunity(content);
#ifndef OVBGP_PARSE_CONTAINER_BGPPARSEEXTCOMMCONTAINERSM_H
#define OVBGP_PARSE_CONTAINER_BGPPARSEEXTCOMMCONTAINERSM_H

#include <vector>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"
#include "OvBgp/Parse/Container/ExtCommCache.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {

// Owns the registry, the plugins, the root of the tree and the cache, and creates them in this
// order, so that the plugins are notified of every node. It uses them only to create them; callers
// may replace each of them. Owner thread only, but any number of threads may parse with the root as
// long as no thread changes the tree.
class OV_EXPORT BgpParseExtCommContainerSm final : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommContainerSm)

 public:
  // A counted pointer to a plugin.
  using PluginPtr = Kiv::Ptr<const BgpParseExtCommPluginBaseSm>;

  // Creates everything. Throws std::bad_alloc.
  BgpParseExtCommContainerSm() { handleInitialized(); }

  // Replaces the registry by a new, empty registry and returns it. Existing plugins and the root
  // keep the old registry.
  const Kiv::Ptr<BgpParseExtCommRuleCollections>& parseExtCommRuleCollectionsIs();
  // Releases the registry. Existing plugins and the root keep it.
  void parseExtCommRuleCollectionsDel() { parseExtCommRuleCollections_ = nullptr; }
  // Returns the registry, for example to create further plugins; null after
  // parseExtCommRuleCollectionsDel().
  const Kiv::Ptr<BgpParseExtCommRuleCollections>& parseExtCommRuleCollections() const noexcept {
    return parseExtCommRuleCollections_;
  }

  // Returns the root for `control`. Keeps the current root if its control is equal, and otherwise
  // replaces it by a new root. Tables that were created with the old root keep it.
  const Kiv::Ptr<BgpParseExtendedCommunityRule>& extCommParserIs(
      const BgpParseExtCommControl& control);
  // Releases the root. Tables that were created with it keep it.
  void extCommParserDel() { extCommParser_ = nullptr; }
  // Returns the root, which parses; null after extCommParserDel().
  const Kiv::Ptr<BgpParseExtendedCommunityRule>& extCommParser() const noexcept {
    return extCommParser_;
  }

  // Returns the cache of show commands; never null. The library itself does not use it.
  const Kiv::Ptr<BgpShowCli::ExtCommCache>& extCommCache() const noexcept { return extCommCache_; }

  // Appends `plugin` to the queue of plugins. The queue only keeps plugins alive: a plugin that
  // leaves it is destroyed unless another reference exists, and its rules stay in the tree. All
  // operations change the queue first and release plugins last, so the destructor of a plugin may
  // call them. Throws Kiv::NullArgumentException for null.
  void extCommParserSmsEnq(const PluginPtr& plugin);
  // Replaces the plugin at `index`, counted from 0, or appends if `index` is the size of the queue.
  // Throws Kiv::RangeException for a greater index, Kiv::NullArgumentException for null.
  void extCommParserSmsIs(U32 index, const PluginPtr& plugin);
  // Removes the first plugin and returns it; null if the queue is empty.
  PluginPtr extCommParserSmsDeq();
  // Removes the plugin at `index`; returns whether there was a plugin.
  bool extCommParserSmsDel(U32 index);
  // Removes all plugins, then releases them. Plugins that a destructor appends meanwhile stay.
  void extCommParserSmsDelAll();
  // Returns the first plugin; null if the queue is empty.
  PluginPtr extCommParserSmsFront() const;
  // Returns the last plugin; null if the queue is empty.
  PluginPtr extCommParserSmsBack() const;
  // Returns the plugin at `index`; null if the queue is not that long.
  PluginPtr extCommParserSms(U32 index) const;
  // Returns the number of plugins in the queue.
  U32 extCommParserSms() const noexcept { return static_cast<U32>(extCommParserSms_.size()); }

 private:
  // Called by the reference count only. Empties the queue before the members are destroyed, because
  // the destructor of a plugin may use the queue.
  ~BgpParseExtCommContainerSm() override;

  // Creates registry, plugins, root and cache.
  void handleInitialized();

  // A vector, since removing all plugins must not allocate, and the queue is short.
  std::vector<PluginPtr> extCommParserSms_;
  Kiv::Ptr<BgpParseExtCommRuleCollections> parseExtCommRuleCollections_;
  Kiv::Ptr<BgpParseExtendedCommunityRule> extCommParser_;
  Kiv::Ptr<BgpShowCli::ExtCommCache> extCommCache_;
};

// Returns a new container with notification on. Throws std::bad_alloc.
OV_EXPORT BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory();

}  // namespace Routing::Bgp

#endif
