// The plugin that makes the rule tree know route origins.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMROUTEORIGINSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMROUTEORIGINSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                                     extCommPktSubtypeTransTwoOctetAsRouteOrigin,
                                     extCommRouteOriginAsFactory, false> {
  KIV_OBJECT(BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                                     extCommPktSubtypeTransIpv4AddressRouteOrigin,
                                     extCommRouteOriginIpv4AddressFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                                     extCommPktSubtypeTransFourOctetAsRouteOrigin,
                                     extCommRouteOriginAsFactory, true> {
  KIV_OBJECT(BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommRouteOriginSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommRouteOriginSm)

 public:
  explicit BgpParseExtCommRouteOriginSm(
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
OV_EXPORT BgpParseExtCommRouteOriginSm::Ptr BgpParseExtCommRouteOriginSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommRouteOriginSm::Ptr bgpParseExtCommRouteOriginSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
