#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransOpaqueTunnelEncapRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTunnelEncapSm)

BgpParseExtCommTunnelEncapSm::Ptr BgpParseExtCommTunnelEncapSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommTunnelEncapSm>(collections);
}

BgpParseExtCommTunnelEncapSm::Ptr bgpParseExtCommTunnelEncapSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommTunnelEncapSmIs(collections);
}

void BgpParseExtCommTunnelEncapSm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransOpaqueSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransOpaqueTunnelEncapRule>(control));
}

}  // namespace Routing::Bgp
