#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"

#include "OvBgp/Parse/Plugin/Private/BgpParseTrace.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule)
KIV_OBJECT_DEFINE(BgpParseExtCommOriginValidationStateSm)

BgpParseExtCommOriginValidationStateSm::Ptr BgpParseExtCommOriginValidationStateSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return bgpParseExtCommPluginIs<BgpParseExtCommOriginValidationStateSm>(collections);
}

BgpParseExtCommOriginValidationStateSm::Ptr bgpParseExtCommOriginValidationStateSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections) {
  return BgpParseExtCommOriginValidationStateSmIs(collections);
}

void BgpParseExtCommOriginValidationStateSm::instantiateExtCommSubTypeNonTransOpaqueSubRule(
    const BgpParseExtCommSubTypeNonTransOpaqueRuleKey& key,
    const BgpParseExtCommControl& control) const {
  BGP_PARSE_TRACE_OPERATION();
  addExtCommSubTypeNonTransOpaqueSubRule(
      key,
      bgpParseExtCommRuleIs<BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule>(control));
}

}  // namespace Routing::Bgp
