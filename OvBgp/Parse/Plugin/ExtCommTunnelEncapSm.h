// The plugin that makes the rule tree know tunnel encapsulations.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMTUNNELENCAPSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMTUNNELENCAPSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeTransOpaqueTunnelEncapRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransOpaqueRuleBase,
                                     extCommPktSubtypeTransOpaqueEncapsulationExtendedCommunity,
                                     extCommTunnelEncapFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeTransOpaqueTunnelEncapRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommTunnelEncapSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommTunnelEncapSm)

 public:
  explicit BgpParseExtCommTunnelEncapSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommTunnelEncapSm::Ptr BgpParseExtCommTunnelEncapSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommTunnelEncapSm::Ptr bgpParseExtCommTunnelEncapSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
