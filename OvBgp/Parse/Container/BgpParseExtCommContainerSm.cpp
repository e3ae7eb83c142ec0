#include "OvBgp/Parse/Container/BgpParseExtCommContainerSm.h"

#include <cstddef>
#include <string>
#include <utility>

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

template <class... Plugin>
struct PluginList {};

// All plugins of the library, in the order in which they serve a node.
using Plugins = PluginList<BgpParseExtCommRouteOriginSm, BgpParseExtCommRouteTargetSm,
                           BgpParseExtCommTunnelEncapSm, BgpParseExtCommDefaultGatewaySm,
                           BgpParseExtCommLinkBandwidthSm, BgpParseExtCommColorSm,
                           BgpParseExtCommOriginValidationStateSm>;

template <class... Plugin>
void pluginsEnq(BgpParseExtCommContainerSm& container, PluginList<Plugin...>) {
  (container.extCommParserSmsEnq(
       bgpParseExtCommPluginIs<Plugin>(container.parseExtCommRuleCollections())),
   ...);
}

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

void BgpParseExtCommContainerSm::extCommParserSmsIs(U32 index, const PluginPtr& plugin) {
  if (index > extCommParserSms_.size()) {
    throw Kiv::RangeException("index > " + std::to_string(extCommParserSms_.size()) +
                              " not allowed");
  }
  if (index == extCommParserSms_.size()) return extCommParserSmsEnq(plugin);
  extCommParserSms_[index] = needed(plugin);
}

BgpParseExtCommContainerSm::PluginPtr BgpParseExtCommContainerSm::extCommParserSmsDeq() {
  if (extCommParserSms_.empty()) return nullptr;
  PluginPtr front = std::move(extCommParserSms_.front());
  extCommParserSms_.pop_front();
  return front;
}

bool BgpParseExtCommContainerSm::extCommParserSmsDel(U32 index) {
  if (index >= extCommParserSms_.size()) return false;
  extCommParserSms_.erase(extCommParserSms_.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

void BgpParseExtCommContainerSm::extCommParserSmsDelAll() { extCommParserSms_.clear(); }

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
