// The type rules: the second level of the rule tree, one a kind.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMTYPERULES_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMTYPERULES_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleMap.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

// What hangs below the root: a rule for all values of one type.
template <class Value>
class BgpParseExtCommTypeRuleBase : public BgpParseExtCommRuleBase {
 public:
  KIV_POINTERS(typename Value::TypeRuleBase)

  BgpParseExtCommTypeRuleBase(const BgpParseExtCommControl& control, typename Value::Type pktType)
      : BgpParseExtCommRuleBase(control), pktType_(pktType) {}

  typename Value::Type pktType() const noexcept { return pktType_; }

  // A new object of `content`, not interned; null leaves the content to the root's
  // fallback. Must not change the tree.
  virtual Kiv::Ptr<typename Value::Object> inhale(const typename Value::Content& content) const = 0;

 private:
  const typename Value::Type pktType_;
};

class OV_EXPORT BgpParseExtendedCommunityTypeRuleBase
    : public BgpParseExtCommTypeRuleBase<BgpParseValue8> {
 public:
  using BgpParseExtCommTypeRuleBase::BgpParseExtCommTypeRuleBase;
};
class OV_EXPORT BgpParseExtendedCommunityIp6TypeRuleBase
    : public BgpParseExtCommTypeRuleBase<BgpParseValue20> {
 public:
  using BgpParseExtCommTypeRuleBase::BgpParseExtCommTypeRuleBase;
};

inline U8 bgpParseSubtypeOctet(const ExtCommContent& content) { return content.subtypeOctet(); }
inline U8 bgpParseSubtypeOctet(const ExtCommIp6Content& content) { return content.subtype(); }

// Leaves by subtype, and the kind's fallback for what none of them takes. Owns its
// leaves. Plugins add theirs through a pointer to const, like the one in the key
// that they hear of: the leaves may change, what the rule is does not.
template <class Kind>
class BgpParseExtCommTypeRule : public Kind::TypeRuleBase {
 public:
  using Subtype = typename Kind::Subtype;
  using SubtypeRulePtr = Kiv::Ptr<const typename Kind::SubtypeRuleBase>;

  explicit BgpParseExtCommTypeRule(const BgpParseExtCommControl& control)
      : Kind::TypeRuleBase(control, Kind::pktType) {}

  // Never null.
  Kiv::Ptr<typename Kind::Object> inhale(const typename Kind::Content& content) const final {
    auto object = subTypeRule_.inhale(bgpParseSubtypeOctet(content), content);
    if (object) return object;
    return Kind::fallback(content);
  }

  // Hangs `rule` under its own subtype, in the place of any that is there. Throws
  // Kiv::NullArgumentException.
  void subTypeRuleIs(const SubtypeRulePtr& rule) const {
    subTypeRule_.is(bgpParseExtCommRuleNeeded(rule)->pktSubtype(), rule);
  }
  // Whether there was one.
  bool subTypeRuleDel(Subtype subtype) const { return subTypeRule_.del(subtype); }
  void subTypeRuleDelAll() const { subTypeRule_.delAll(); }
  // Null if there is none.
  SubtypeRulePtr subTypeRule(Subtype subtype) const {
    return SubtypeRulePtr(subTypeRule_.find(subtype));
  }

  void handleInitialized() final {
    if constexpr (Kind::announced) {
      this->template announce<Kind>(key());
    } else {
      this->template withdraw<Kind>(key());
    }
  }
  // The key goes first: a plugin that hears of it hangs a last leaf, which must not
  // outlive the others.
  void handleDel() final {
    this->template withdraw<Kind>(key());
    if constexpr (Kind::announced) subTypeRuleDelAll();
  }

 private:
  typename Kind::Key key() const {
    return typename Kind::Key(static_cast<const typename Kind::Rule*>(this));
  }

  mutable BgpParseExtCommRuleMap<Subtype, typename Kind::SubtypeRuleBase> subTypeRule_;
};

class OV_EXPORT BgpParseExtCommTransTwoOctetAsRule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransTwoOctetAs> {
  KIV_OBJECT(BgpParseExtCommTransTwoOctetAsRule)

 public:
  explicit BgpParseExtCommTransTwoOctetAsRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransIpv4AddressRule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransIpv4Address> {
  KIV_OBJECT(BgpParseExtCommTransIpv4AddressRule)

 public:
  explicit BgpParseExtCommTransIpv4AddressRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransFourOctetAsRule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransFourOctetAs> {
  KIV_OBJECT(BgpParseExtCommTransFourOctetAsRule)

 public:
  explicit BgpParseExtCommTransFourOctetAsRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransOpaqueRule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransOpaque> {
  KIV_OBJECT(BgpParseExtCommTransOpaqueRule)

 public:
  explicit BgpParseExtCommTransOpaqueRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransGenericRule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransGeneric> {
  KIV_OBJECT(BgpParseExtCommTransGenericRule)

 public:
  explicit BgpParseExtCommTransGenericRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransGenericPart2Rule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransGenericPart2> {
  KIV_OBJECT(BgpParseExtCommTransGenericPart2Rule)

 public:
  explicit BgpParseExtCommTransGenericPart2Rule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommTransGenericPart3Rule final
    : public BgpParseExtCommTypeRule<BgpParseKindTransGenericPart3> {
  KIV_OBJECT(BgpParseExtCommTransGenericPart3Rule)

 public:
  explicit BgpParseExtCommTransGenericPart3Rule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommNonTransTwoOctetAsRule final
    : public BgpParseExtCommTypeRule<BgpParseKindNonTransTwoOctetAs> {
  KIV_OBJECT(BgpParseExtCommNonTransTwoOctetAsRule)

 public:
  explicit BgpParseExtCommNonTransTwoOctetAsRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommNonTransIpv4AddressRule final
    : public BgpParseExtCommTypeRule<BgpParseKindNonTransIpv4Address> {
  KIV_OBJECT(BgpParseExtCommNonTransIpv4AddressRule)

 public:
  explicit BgpParseExtCommNonTransIpv4AddressRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommNonTransFourOctetAsRule final
    : public BgpParseExtCommTypeRule<BgpParseKindNonTransFourOctetAs> {
  KIV_OBJECT(BgpParseExtCommNonTransFourOctetAsRule)

 public:
  explicit BgpParseExtCommNonTransFourOctetAsRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommNonTransOpaqueRule final
    : public BgpParseExtCommTypeRule<BgpParseKindNonTransOpaque> {
  KIV_OBJECT(BgpParseExtCommNonTransOpaqueRule)

 public:
  explicit BgpParseExtCommNonTransOpaqueRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommIp6TransRule final
    : public BgpParseExtCommTypeRule<BgpParseKindIp6Trans> {
  KIV_OBJECT(BgpParseExtCommIp6TransRule)

 public:
  explicit BgpParseExtCommIp6TransRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

class OV_EXPORT BgpParseExtCommIp6NonTransRule final
    : public BgpParseExtCommTypeRule<BgpParseKindIp6NonTrans> {
  KIV_OBJECT(BgpParseExtCommIp6NonTransRule)

 public:
  explicit BgpParseExtCommIp6NonTransRule(const BgpParseExtCommControl& control)
      : BgpParseExtCommTypeRule(control) {
    constructed();
  }
};

}  // namespace Routing::Bgp

#endif
