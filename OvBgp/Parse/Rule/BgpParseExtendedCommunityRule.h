// The root of the rule tree: from the octets of an extended community to an object
// of the right class.
//
//   root          by the type octet
//     type rule   by the subtype octet
//       leaf      builds the typed object
//
// The root and the type rules are always there; leaves come from plugins. What no
// leaf takes becomes a generic object, so that parsing never fails.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTENDEDCOMMUNITYRULE_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTENDEDCOMMUNITYRULE_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/String.h"
#include "Kiv/Types.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleMap.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommTypeRules.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

// Owns its type rules, one a type, which it builds before it announces itself; plugins
// that watch the root may replace them or add to them, through the pointer to const
// that they are given. Interns nothing.
class OV_EXPORT BgpParseExtendedCommunityRule final : public BgpParseExtCommRuleBase {
  KIV_OBJECT(BgpParseExtendedCommunityRule)

 public:
  using TypeRulePtr = Kiv::Ptr<const BgpParseExtendedCommunityTypeRuleBase>;
  using Ip6TypeRulePtr = Kiv::Ptr<const BgpParseExtendedCommunityIp6TypeRuleBase>;

  // Plugins that watch the control's registry have hung their leaves when this returns.
  explicit BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control);

  // A new object, never null. Two lookups and a virtual call a level; allocates
  // nothing but the object. Throws std::bad_alloc.
  ExtComm::Ptr parseExtendedCommunity(const ExtCommContent& content) const;
  ExtCommIp6::Ptr parseExtendedCommunityIp6(const ExtCommIp6Content& content) const;

  // The user-interface text of the community with the octets `value`.
  Kiv::String showString(const U64& value, bool asdot, bool linkBwWeighted, bool json) const;

  // Is: hangs a rule under its own type, in the place of any that is there; throws
  // Kiv::NullArgumentException. Del: whether there was one. Lookups: null if none.
  void typeRuleIs(const TypeRulePtr& rule) const;
  bool typeRuleDel(BgpExtCommPktType type) const { return typeRule_.del(type); }
  void typeRuleDelAll() const { typeRule_.delAll(); }
  TypeRulePtr typeRule(BgpExtCommPktType type) const { return TypeRulePtr(typeRule_.find(type)); }

  void ip6TypeRuleIs(const Ip6TypeRulePtr& rule) const;
  bool ip6TypeRuleDel(BgpExtCommIp6PktType type) const { return ip6TypeRule_.del(type); }
  void ip6TypeRuleDelAll() const { ip6TypeRule_.delAll(); }
  Ip6TypeRulePtr ip6TypeRule(BgpExtCommIp6PktType type) const {
    return Ip6TypeRulePtr(ip6TypeRule_.find(type));
  }

  // Builds the type rules, then announces the root.
  void handleInitialized() override;
  void handleDel() override;

 private:
  template <class... Kind>
  void typeRulesAre(BgpParseKindList<Kind...> kinds);
  void hang(const TypeRulePtr& rule) const { typeRuleIs(rule); }
  void hang(const Ip6TypeRulePtr& rule) const { ip6TypeRuleIs(rule); }

  mutable BgpParseExtCommRuleMap<BgpExtCommPktType, BgpParseExtendedCommunityTypeRuleBase>
      typeRule_;
  mutable BgpParseExtCommRuleMap<BgpExtCommIp6PktType, BgpParseExtendedCommunityIp6TypeRuleBase>
      ip6TypeRule_;
};

// A new root with notification on.
OV_EXPORT BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control);

}  // namespace Routing::Bgp

#endif
