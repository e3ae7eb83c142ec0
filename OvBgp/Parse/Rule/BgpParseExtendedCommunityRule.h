// BgpParseExtendedCommunityRule: the root of the rule tree, which turns the octets of an extended
// community into an object of the right class.
//
//   root          selects a type rule by the type octet
//     type rule   selects a leaf by the subtype octet
//       leaf      builds the typed object
//
// The root builds itself and the type rules; plugins add leaves. A value that no leaf accepts
// becomes a generic object, so parsing never fails because of the octets.
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

// Owns its type rules, at most one for each type octet. The constructor builds the thirteen rules
// of BgpParseTypeKinds and then announces the root, so that plugins can add or replace type rules.
//
// The operations that add and remove type rules are const, because plugins get a pointer to const
// with the key. They must not run while a thread parses. The root interns nothing and holds no
// reference to what it builds.
class OV_EXPORT BgpParseExtendedCommunityRule final : public BgpParseExtCommRuleBase {
  KIV_OBJECT(BgpParseExtendedCommunityRule)

  // Called by the reference count only.
  ~BgpParseExtendedCommunityRule() override = default;

 public:
  // A counted pointer to a type rule for 8-octet values.
  using TypeRulePtr = Kiv::Ptr<const BgpParseExtendedCommunityTypeRuleBase>;
  // A counted pointer to a type rule for 20-octet values.
  using Ip6TypeRulePtr = Kiv::Ptr<const BgpParseExtendedCommunityIp6TypeRuleBase>;

  // Builds and announces the whole tree. Plugins that watch the control's registry have added their
  // rules when the constructor returns. Throws std::bad_alloc, and what an observer throws.
  explicit BgpParseExtendedCommunityRule(const BgpParseExtCommControl& control);

  // Returns a new object for `content`, not interned, and never null. Two array accesses and two
  // virtual calls; allocates the object only. Throws std::bad_alloc. Any number of threads may call
  // it at the same time.
  ExtComm::Ptr parseExtendedCommunity(const ExtCommContent& content) const;
  // Does the same for a 20-octet community.
  ExtCommIp6::Ptr parseExtendedCommunityIp6(const ExtCommIp6Content& content) const;

  // Parses the octets `value`, first octet in the highest bits, and returns the object's
  // user-interface text. `asdot` selects high.low notation of AS numbers above 65535,
  // `linkBwWeighted` a bandwidth as a bare number; `json` changes no text of the library. Nothing
  // is interned or cached; see BgpShowCli::ExtCommCache.
  Kiv::String showString(const U64& value, bool asdot, bool linkBwWeighted, bool json) const;

  // Stores `rule` under its own type and replaces any previous rule. Throws
  // Kiv::NullArgumentException for null, Kiv::RangeException for a type above 256.
  void typeRuleIs(const TypeRulePtr& rule) const;
  // Removes the rule of `type`; returns whether there was a rule.
  bool typeRuleDel(BgpExtCommPktType type) const { return typeRule_.del(type); }
  // Removes all type rules for 8-octet values.
  void typeRuleDelAll() const { typeRule_.delAll(); }
  // Returns whether there is a rule for `type`.
  bool typeRuleHas(BgpExtCommPktType type) const noexcept { return typeRule_.has(type); }
  // Returns the rule of `type`; null if there is none.
  TypeRulePtr typeRule(BgpExtCommPktType type) const { return TypeRulePtr(typeRule_.find(type)); }

  // Stores `rule` like typeRuleIs(), for 20-octet values.
  void ip6TypeRuleIs(const Ip6TypeRulePtr& rule) const;
  // Removes the rule of `type` for 20-octet values; returns whether there was a rule.
  bool ip6TypeRuleDel(BgpExtCommIp6PktType type) const { return ip6TypeRule_.del(type); }
  // Removes all type rules for 20-octet values.
  void ip6TypeRuleDelAll() const { ip6TypeRule_.delAll(); }
  // Returns whether there is a rule for `type` for 20-octet values.
  bool ip6TypeRuleHas(BgpExtCommIp6PktType type) const noexcept { return ip6TypeRule_.has(type); }
  // Returns the rule of `type` for 20-octet values; null if there is none.
  Ip6TypeRulePtr ip6TypeRule(BgpExtCommIp6PktType type) const {
    return Ip6TypeRulePtr(ip6TypeRule_.find(type));
  }

  // Builds the type rules, then announces the root. The constructor calls it.
  void handleInitialized() override;
  // Withdraws the root, then removes all type rules, which withdraw themselves.
  void handleDel() override;

 private:
  // Builds one type rule for each kind.
  template <class... Kind>
  void typeRulesAre(BgpParseKindList<Kind...> kinds);
  // Overloads, so that typeRulesAre() need not know the width of a kind.
  void hang(const TypeRulePtr& rule) const { typeRuleIs(rule); }
  void hang(const Ip6TypeRulePtr& rule) const { ip6TypeRuleIs(rule); }

  mutable BgpParseExtCommRuleMap<BgpExtCommPktType, BgpParseExtendedCommunityTypeRuleBase>
      typeRule_;
  mutable BgpParseExtCommRuleMap<BgpExtCommIp6PktType, BgpParseExtendedCommunityIp6TypeRuleBase>
      ip6TypeRule_;
};

// Returns a new root with notification on. Throws like the constructor.
OV_EXPORT BgpParseExtendedCommunityRule::Ptr bgpParseExtendedCommunityRuleFactory(
    const BgpParseExtCommControl& control);

}  // namespace Routing::Bgp

#endif
