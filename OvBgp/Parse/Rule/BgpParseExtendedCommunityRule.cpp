#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(BgpParseExtendedCommunityRule)

BgpParseExtendedCommunityRule::BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control)
    : BgpParseExtCommRuleBase(control) {
  constructed();
}

BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control) {
  return bgpParseExtCommRuleIs<BgpParseExtendedCommunityRule>(control);
}

ExtComm::Ptr BgpParseExtendedCommunityRule::parseExtendedCommunity(
    const ExtCommContent& content) const {
  ExtComm::Ptr object = typeRule_.inhale(content.typeOctet(), content);
  if (object) return object;
  return extCommFactory(extCommClassificationUnSpecified, content);
}

ExtCommIp6::Ptr BgpParseExtendedCommunityRule::parseExtendedCommunityIp6(
    const ExtCommIp6Content& content) const {
  ExtCommIp6::Ptr object = ip6TypeRule_.inhale(content.type(), content);
  if (object) return object;
  return extCommIp6Factory(extCommClassificationUnSpecified, content);
}

Kiv::String BgpParseExtendedCommunityRule::showString(const U64& value, bool asdot,
                                                      bool linkBwWeighted, bool json) const {
  return parseExtendedCommunity(ExtCommContent(value))->toStrepForUI(asdot, linkBwWeighted, json);
}

void BgpParseExtendedCommunityRule::typeRuleIs(const TypeRulePtr& rule) const {
  typeRule_.is(bgpParseExtCommRuleNeeded(rule)->pktType(), rule);
}

void BgpParseExtendedCommunityRule::ip6TypeRuleIs(const Ip6TypeRulePtr& rule) const {
  ip6TypeRule_.is(bgpParseExtCommRuleNeeded(rule)->pktType(), rule);
}

// Each type rule announces itself before it hangs here, so that it has its leaves.
template <class... Kind>
void BgpParseExtendedCommunityRule::typeRulesAre(BgpParseKindList<Kind...>) {
  (hang(bgpParseExtCommRuleIs<typename Kind::Rule>(parseControl())), ...);
}

void BgpParseExtendedCommunityRule::handleInitialized() {
  typeRulesAre(BgpParseTypeKinds{});
  announce<BgpParseKindRoot>(BgpParseExtendedCommunityRuleKey(this));
}

void BgpParseExtendedCommunityRule::handleDel() {
  withdraw<BgpParseKindRoot>(BgpParseExtendedCommunityRuleKey(this));
  typeRuleDelAll();
  ip6TypeRuleDelAll();
}

}  // namespace Routing::Bgp
