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

// Types without a rule, and types whose rule returns null, become plain ExtComm objects: nothing is
// known about the subtype of these types.
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

// Each type rule announces itself in its constructor. Plugins therefore add its leaves before the
// root stores it.
template <class... Kind>
void BgpParseExtendedCommunityRule::typeRulesAre(BgpParseKindList<Kind...>) {
  (hang(bgpParseExtCommRuleIs<typename Kind::Rule>(parseControl())), ...);
}

// Announces the root last, so that plugins which serve it find all type rules and can replace them.
void BgpParseExtendedCommunityRule::handleInitialized() {
  typeRulesAre(BgpParseTypeKinds{});
  announce<BgpParseKindRoot>(BgpParseExtendedCommunityRuleKey(this));
}

// The key leaves first: plugins that are notified of the withdrawal may add type rules again, and
// these must be removed, too.
void BgpParseExtendedCommunityRule::handleDel() {
  withdraw<BgpParseKindRoot>(BgpParseExtendedCommunityRuleKey(this));
  typeRuleDelAll();
  ip6TypeRuleDelAll();
}

}  // namespace Routing::Bgp
