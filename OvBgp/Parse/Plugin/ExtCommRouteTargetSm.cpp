#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule)
KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule)
KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule)
KIV_OBJECT_DEFINE(BgpParseExtCommRouteTargetSm)

BgpParseExtCommRouteTargetSm::Ptr BgpParseExtCommRouteTargetSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommRouteTargetSm>(collections);
}

BgpParseExtCommRouteTargetSm::Ptr bgpParseExtCommRouteTargetSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommRouteTargetSmIs(collections);
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransTwoOctetAsSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule>(control));
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransIpv4AddressSubRule(
    const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransIpv4AddressSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule>(control));
}

void BgpParseExtCommRouteTargetSm::instantiateExtCommSubTypeTransFourOctetAsSubRule(
    const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransFourOctetAsSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule>(control));
}

}  // namespace Routing::Bgp
