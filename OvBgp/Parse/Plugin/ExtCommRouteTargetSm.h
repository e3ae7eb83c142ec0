// The plugin that makes the rule tree know route targets.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMROUTETARGETSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMROUTETARGETSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                                     extCommPktSubtypeTransTwoOctetAsRouteTarget,
                                     extCommRouteTargetAsFactory, false> {
  KIV_OBJECT(BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                                     extCommPktSubtypeTransIpv4AddressRouteTarget,
                                     extCommRouteTargetIpv4AddressFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                                     extCommPktSubtypeTransFourOctetAsRouteTarget,
                                     extCommRouteTargetAsFactory, true> {
  KIV_OBJECT(BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommRouteTargetSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommRouteTargetSm)

 public:
  explicit BgpParseExtCommRouteTargetSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeTransTwoOctetAsSubRule(
      const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& key,
      const BgpParseExtCommControl& control) const override;
  void instantiateExtCommSubTypeTransIpv4AddressSubRule(
      const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& key,
      const BgpParseExtCommControl& control) const override;
  void instantiateExtCommSubTypeTransFourOctetAsSubRule(
      const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommRouteTargetSm::Ptr BgpParseExtCommRouteTargetSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommRouteTargetSm::Ptr bgpParseExtCommRouteTargetSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
