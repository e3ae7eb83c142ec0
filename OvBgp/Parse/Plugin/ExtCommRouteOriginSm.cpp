#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule)
KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule)
KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule)
KIV_OBJECT_DEFINE(BgpParseExtCommRouteOriginSm)

BgpParseExtCommRouteOriginSm::Ptr BgpParseExtCommRouteOriginSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommRouteOriginSm>(collections);
}

BgpParseExtCommRouteOriginSm::Ptr bgpParseExtCommRouteOriginSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommRouteOriginSmIs(collections);
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeTransTwoOctetAsRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransTwoOctetAsSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule>(control));
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransIpv4AddressSubRule(
    const BgpParseExtCommSubTypeTransIpv4AddressRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransIpv4AddressSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule>(control));
}

void BgpParseExtCommRouteOriginSm::instantiateExtCommSubTypeTransFourOctetAsSubRule(
    const BgpParseExtCommSubTypeTransFourOctetAsRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransFourOctetAsSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule>(control));
}

}  // namespace Routing::Bgp
