#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule)
KIV_OBJECT_DEFINE(BgpParseExtCommDefaultGatewaySm)

BgpParseExtCommDefaultGatewaySm::Ptr BgpParseExtCommDefaultGatewaySmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommDefaultGatewaySm>(collections);
}

BgpParseExtCommDefaultGatewaySm::Ptr bgpParseExtCommDefaultGatewaySmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommDefaultGatewaySmIs(collections);
}

void BgpParseExtCommDefaultGatewaySm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransOpaqueSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransOpaqueDefaultGatewayRule>(control));
}

}  // namespace Routing::Bgp
