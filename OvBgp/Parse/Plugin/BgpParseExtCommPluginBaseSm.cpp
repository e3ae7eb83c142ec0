#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtCommPluginBaseSm)

BgpParseExtCommPluginBaseSm::Ptr BgpParseExtCommPluginBaseSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommPluginBaseSm>(collections);
}

void BgpParseExtCommPluginBaseSm::begin() {
  if (hasBegun_) return;
  hasBegun_ = true;
  handleStartup();
}

// With a reference, as nobody has one yet and operations may take some and drop them.
void BgpParseExtCommPluginBaseSm::constructed() {
  referenceAdd();
  begin();
  referenceSubtract();
}

// An operation may let go of the plugin.
void BgpParseExtCommPluginBaseSm::handleStartup() const {
  const PtrConst self(this);
  handleInstancesOf(BgpParseNodeKinds{});
}

template <class... Kind>
void BgpParseExtCommPluginBaseSm::handleInstancesOf(BgpParseKindList<Kind...>) const {
  (handleInstances(Kind{}), ...);
}

void BgpParseExtCommPluginBaseSm::handleChange(const Kiv::Change& change) const {
  if (hasNotificationActive()) handleChangeOf(BgpParseNodeKinds{}, change);
}

template <class... Kind>
void BgpParseExtCommPluginBaseSm::handleChangeOf(BgpParseKindList<Kind...>,
                                                 const Kiv::Change& change) const {
  // The operation may be the end of the plugin, so nothing of it is used after.
  (void)((change.attribute() == Kind::attribute &&
          (handleInstance(change.key<typename Kind::Key>()), true)) ||
         ...);
}

}  // namespace Routing::Bgp
