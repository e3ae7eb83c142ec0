#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule)
KIV_OBJECT_DEFINE(BgpParseExtCommLinkBandwidthSm)

BgpParseExtCommLinkBandwidthSm::Ptr BgpParseExtCommLinkBandwidthSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommLinkBandwidthSm>(collections);
}

BgpParseExtCommLinkBandwidthSm::Ptr bgpParseExtCommLinkBandwidthSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommLinkBandwidthSmIs(collections);
}

void BgpParseExtCommLinkBandwidthSm::instantiateExtCommSubTypeNonTransTwoOctetAsSubRule(
    const BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeNonTransTwoOctetAsSubRule(
      key,
      bgpParseExtCommRuleIs<BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule>(control));
}

}  // namespace Routing::Bgp
