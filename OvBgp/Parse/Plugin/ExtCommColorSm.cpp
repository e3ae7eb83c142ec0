#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeTransOpaqueColorRule)
KIV_OBJECT_DEFINE(BgpParseExtCommColorSm)

BgpParseExtCommColorSm::Ptr BgpParseExtCommColorSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommColorSm>(collections);
}

BgpParseExtCommColorSm::Ptr bgpParseExtCommColorSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommColorSmIs(collections);
}

void BgpParseExtCommColorSm::instantiateExtCommSubTypeTransOpaqueSubRule(
    const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeTransOpaqueSubRule(
      key, bgpParseExtCommRuleIs<BgpParseExtComSubTypeTransOpaqueColorRule>(control));
}

}  // namespace Routing::Bgp
