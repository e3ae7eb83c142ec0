// The parser, put together: what an agent starts with.
//
//   auto parser = bgpParseExtCommContainerSmFactory();
//   auto object = parser->extCommParser()->parseExtendedCommunity(content);
#ifndef OVBGP_PARSE_CONTAINER_BGPPARSEEXTCOMMCONTAINERSM_H
#define OVBGP_PARSE_CONTAINER_BGPPARSEEXTCOMMCONTAINERSM_H

#include <deque>

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

// Holds the registry, the plugins, the root of the tree and the cache of show
// commands, made in this order, so that the plugins serve each node as it comes.
// Owner thread only; any number of threads may parse while nobody changes the tree.
class OV_EXPORT BgpParseExtCommContainerSm final : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommContainerSm)

 public:
  using PluginPtr = Kiv::Ptr<const BgpParseExtCommPluginBaseSm>;

  BgpParseExtCommContainerSm() { handleInitialized(); }

  // A new, empty registry in place of the one that is held. Plugins and root stay
  // with theirs.
  const Kiv::Ptr<BgpParseExtCommRuleCollections>& parseExtCommRuleCollectionsIs();
  void parseExtCommRuleCollectionsDel() { parseExtCommRuleCollections_ = nullptr; }
  const Kiv::Ptr<BgpParseExtCommRuleCollections>& parseExtCommRuleCollections() const noexcept {
    return parseExtCommRuleCollections_;
  }

  // The root that is held if it was built with an equal control, otherwise a new one
  // in its place. Tables that were built on the old one keep it.
  const Kiv::Ptr<BgpParseExtendedCommunityRule>& extCommParserIs(
      const BgpParseExtCommControl& control);
  void extCommParserDel() { extCommParser_ = nullptr; }
  const Kiv::Ptr<BgpParseExtendedCommunityRule>& extCommParser() const noexcept {
    return extCommParser_;
  }

  const Kiv::Ptr<BgpShowCli::ExtCommCache>& extCommCache() const noexcept { return extCommCache_; }

  // The queue of plugins. A plugin that leaves it ends when nobody else holds it;
  // what it added to the tree stays.
  //
  // Is: replaces the one at `index`, or appends if that is the end. It throws
  // Kiv::RangeException for an index beyond the end; it and Enq throw
  // Kiv::NullArgumentException.
  void extCommParserSmsEnq(const PluginPtr& plugin);
  void extCommParserSmsIs(U32 index, const PluginPtr& plugin);
  // The one taken from the front; null if there is none.
  PluginPtr extCommParserSmsDeq();
  // Whether there was one.
  bool extCommParserSmsDel(U32 index);
  void extCommParserSmsDelAll();
  // Null if there is none.
  PluginPtr extCommParserSmsFront() const;
  PluginPtr extCommParserSmsBack() const;
  PluginPtr extCommParserSms(U32 index) const;
  U32 extCommParserSms() const noexcept { return static_cast<U32>(extCommParserSms_.size()); }

 private:
  void handleInitialized();

  std::deque<PluginPtr> extCommParserSms_;
  Kiv::Ptr<BgpParseExtCommRuleCollections> parseExtCommRuleCollections_;
  Kiv::Ptr<BgpParseExtendedCommunityRule> extCommParser_;
  Kiv::Ptr<BgpShowCli::ExtCommCache> extCommCache_;
};

OV_EXPORT BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory();

}  // namespace Routing::Bgp

#endif
