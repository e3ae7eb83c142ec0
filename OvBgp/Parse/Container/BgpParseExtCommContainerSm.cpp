#include "OvBgp/Parse/Container/BgpParseExtCommContainerSm.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Exception.h"
#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"
#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"
#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"
#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"
#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"

namespace Routing::Bgp {
namespace {

// A list of plugin classes as a type.
template <class... Plugin>
struct PluginList {};

// All plugins of the library, in the order in which they are notified of a node. A new plugin is
// added here. No two plugins claim the same type and subtype, so the order changes no result.
using Plugins = PluginList<BgpParseExtCommRouteOriginSm, BgpParseExtCommRouteTargetSm,
                           BgpParseExtCommTunnelEncapSm, BgpParseExtCommDefaultGatewaySm,
                           BgpParseExtCommLinkBandwidthSm, BgpParseExtCommColorSm,
                           BgpParseExtCommOriginValidationStateSm>;

// Creates each plugin on the container's registry and appends it to the queue.
template <class... Plugin>
void pluginsEnq(BgpParseExtCommContainerSm& container, PluginList<Plugin...>) {
  (container.extCommParserSmsEnq(
       bgpParseExtCommPluginIs<Plugin>(container.parseExtCommRuleCollections())),
   ...);
}

// Returns `plugin`, which must not be null.
const BgpParseExtCommContainerSm::PluginPtr& needed(
    const BgpParseExtCommContainerSm::PluginPtr& plugin) {
  if (!plugin) throw Kiv::NullArgumentException("a plugin is needed, not a null");
  return plugin;
}

}  // namespace

KIV_OBJECT_DEFINE(BgpParseExtCommContainerSm)

BgpParseExtCommContainerSm::Ptr bgpParseExtCommContainerSmFactory() {
  return Dorn::notifyingObject<BgpParseExtCommContainerSm>();
}

// A destructor of a plugin may append further plugins, hence the loop.
BgpParseExtCommContainerSm::~BgpParseExtCommContainerSm() {
  while (!extCommParserSms_.empty()) extCommParserSmsDelAll();
}

// The plugins exist before the tree, so that each node gets its rules when it is announced. The
// opposite order would work as well, but the plugins would then have to serve all nodes afterwards.
void BgpParseExtCommContainerSm::handleInitialized() {
  parseExtCommRuleCollectionsIs();
  pluginsEnq(*this, Plugins{});
  extCommParserIs(BgpParseExtCommControl(parseExtCommRuleCollections_));
  extCommCache_ = BgpShowCli::extCommCacheFactory();
}

const Kiv::Ptr<BgpParseExtCommRuleCollections>&
BgpParseExtCommContainerSm::parseExtCommRuleCollectionsIs() {
  parseExtCommRuleCollections_ = bgpParseExtCommRuleCollectionsFactory();
  return parseExtCommRuleCollections_;
}

// Controls are equal if they have the same registry, so an equal control would give an equal tree.
const Kiv::Ptr<BgpParseExtendedCommunityRule>& BgpParseExtCommContainerSm::extCommParserIs(
    const BgpParseExtCommControl& control) {
  if (!extCommParser_ || extCommParser_->parseControl() != control) {
    extCommParser_ = bgpParseExtendedCommunityRuleFactory(control);
  }
  return extCommParser_;
}

void BgpParseExtCommContainerSm::extCommParserSmsEnq(const PluginPtr& plugin) {
  extCommParserSms_.push_back(needed(plugin));
}

// An index equal to the size appends, so a caller can fill an empty queue by position. The index is
// checked before the plugin.
void BgpParseExtCommContainerSm::extCommParserSmsIs(U32 index, const PluginPtr& plugin) {
  if (index > extCommParserSms_.size()) {
    throw Kiv::RangeException("index > " + std::to_string(extCommParserSms_.size()) +
                              " not allowed");
  }
  if (index == extCommParserSms_.size()) return extCommParserSmsEnq(plugin);
  PluginPtr incoming = needed(plugin);
  // `incoming` releases the previous plugin when the function returns.
  extCommParserSms_[index].swap(incoming);
}

BgpParseExtCommContainerSm::PluginPtr BgpParseExtCommContainerSm::extCommParserSmsDeq() {
  if (extCommParserSms_.empty()) return nullptr;
  PluginPtr front = std::move(extCommParserSms_.front());
  extCommParserSms_.erase(extCommParserSms_.begin());
  return front;
}

bool BgpParseExtCommContainerSm::extCommParserSmsDel(U32 index) {
  if (index >= extCommParserSms_.size()) return false;
  const auto at = extCommParserSms_.begin() + static_cast<std::ptrdiff_t>(index);
  const PluginPtr gone = std::move(*at);
  extCommParserSms_.erase(at);
  return true;
}

void BgpParseExtCommContainerSm::extCommParserSmsDelAll() {
  std::vector<PluginPtr> gone;
  gone.swap(extCommParserSms_);
}

BgpParseExtCommContainerSm::PluginPtr BgpParseExtCommContainerSm::extCommParserSmsFront() const {
  return extCommParserSms(0);
}

BgpParseExtCommContainerSm::PluginPtr BgpParseExtCommContainerSm::extCommParserSmsBack() const {
  return extCommParserSms_.empty() ? nullptr : extCommParserSms_.back();
}

BgpParseExtCommContainerSm::PluginPtr BgpParseExtCommContainerSm::extCommParserSms(
    U32 index) const {
  return index < extCommParserSms_.size() ? extCommParserSms_[index] : nullptr;
}

}  // namespace Routing::Bgp
