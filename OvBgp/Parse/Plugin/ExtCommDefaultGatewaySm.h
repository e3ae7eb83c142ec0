// The plugin that makes the rule tree know default gateways.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMDEFAULTGATEWAYSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMDEFAULTGATEWAYSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransOpaqueRuleBase,
                                     extCommPktSubtypeTransOpaqueDefaultGateway,
                                     extCommDefaultGatewayFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommDefaultGatewaySm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommDefaultGatewaySm)

 public:
  explicit BgpParseExtCommDefaultGatewaySm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommDefaultGatewaySm::Ptr BgpParseExtCommDefaultGatewaySmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommDefaultGatewaySm::Ptr bgpParseExtCommDefaultGatewaySmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
