#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtCommPluginBaseSm)

// The call is not virtual here, in the constructor, which is what is wanted: a derived class that
// overrides it is not constructed yet.
BgpParseExtCommPluginBaseSm::BgpParseExtCommPluginBaseSm(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
    : ruleCollections_(*this, collections) {
  PtrInterface::hasNotificationActiveIs(true);
}

BgpParseExtCommPluginBaseSm::Ptr BgpParseExtCommPluginBaseSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommPluginBaseSm>(collections);
}

void BgpParseExtCommPluginBaseSm::begin() {
  if (hasBegun_) return;
  hasBegun_ = true;
  handleStartup();
}

// The object has no reference yet. An operation that takes and releases a reference would destroy
// the plugin inside its own constructor, so hold one until the operations have finished.
void BgpParseExtCommPluginBaseSm::constructed() {
  referenceAdd();
  begin();
  referenceSubtract();
}

// An operation may release the last reference to the plugin while later kinds still wait.
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

// Compares the change's attribute with the number of each kind until one matches. At most one kind
// matches, and nothing of the plugin is used after its operation, which may destroy the plugin.
template <class... Kind>
void BgpParseExtCommPluginBaseSm::handleChangeOf(BgpParseKindList<Kind...>,
                                                 const Kiv::Change& change) const {
  (void)((change.attribute() == Kind::attribute &&
          (handleInstance(change.key<typename Kind::Key>()), true)) ||
         ...);
}

}  // namespace Routing::Bgp
