// The type rules: the second level of the rule tree, one class for each type octet.
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

// A child of the root: the rule for all values with one type octet. `Value` is BgpParseValue8 or
// BgpParseValue20. Plugins may derive type rules of their own, for types without a kind.
template <class Value>
class BgpParseExtCommTypeRuleBase : public BgpParseExtCommRuleBase {
 public:
  KIV_POINTERS(typename Value::TypeRuleBase)

  // Builds a rule for values of type `pktType`.
  BgpParseExtCommTypeRuleBase(const BgpParseExtCommControl& control, typename Value::Type pktType)
      : BgpParseExtCommRuleBase(control), pktType_(pktType) {}

  // Returns the type octet under which the root stores this rule.
  typename Value::Type pktType() const noexcept { return pktType_; }

  // Returns a new object for `content`, not interned, or null to leave the value to the root's
  // fallback. Several threads may call it at the same time; it must not change the tree.
  virtual Kiv::Ptr<typename Value::Object> inhale(const typename Value::Content& content) const = 0;

 private:
  const typename Value::Type pktType_;
};

// The base of all type rules for 8-octet values.
class OV_EXPORT BgpParseExtendedCommunityTypeRuleBase
    : public BgpParseExtCommTypeRuleBase<BgpParseValue8> {
 public:
  // The constructor of the template.
  using BgpParseExtCommTypeRuleBase::BgpParseExtCommTypeRuleBase;
};

// The base of all type rules for 20-octet values.
class OV_EXPORT BgpParseExtendedCommunityIp6TypeRuleBase
    : public BgpParseExtCommTypeRuleBase<BgpParseValue20> {
 public:
  // The constructor of the template.
  using BgpParseExtCommTypeRuleBase::BgpParseExtCommTypeRuleBase;
};

// Returns the second octet of an 8-octet value.
inline U8 bgpParseSubtypeOctet(const ExtCommContent& content) { return content.subtypeOctet(); }
// Returns the second octet of a 20-octet value.
inline U8 bgpParseSubtypeOctet(const ExtCommIp6Content& content) { return content.subtype(); }

// A type rule that selects a leaf by the subtype octet, and uses the kind's fallback if no leaf
// builds an object. Owns its leaves, at most one for each subtype.
//
// The operations that add and remove leaves are const, because plugins get a pointer to const with
// the key: the set of leaves may change, but type and control of the rule may not. They must not
// run while a thread parses.
template <class Kind>
class BgpParseExtCommTypeRule : public Kind::TypeRuleBase {
 public:
  // The enumeration of the subtype octet.
  using Subtype = typename Kind::Subtype;
  // A counted pointer to a leaf.
  using SubtypeRulePtr = Kiv::Ptr<const typename Kind::SubtypeRuleBase>;

  // Builds a rule without leaves, not yet announced.
  explicit BgpParseExtCommTypeRule(const BgpParseExtCommControl& control)
      : Kind::TypeRuleBase(control, Kind::pktType) {}

  // Returns a new object for `content`, not interned, and never null. One array access and one
  // virtual call. Throws std::bad_alloc.
  Kiv::Ptr<typename Kind::Object> inhale(const typename Kind::Content& content) const final {
    auto object = subTypeRule_.inhale(bgpParseSubtypeOctet(content), content);
    if (object) return object;
    return Kind::fallback(content);
  }

  // Stores `rule` under its own subtype and replaces any previous leaf. Throws
  // Kiv::NullArgumentException for null, Kiv::RangeException for a subtype above 256.
  void subTypeRuleIs(const SubtypeRulePtr& rule) const {
    subTypeRule_.is(bgpParseExtCommRuleNeeded(rule)->pktSubtype(), rule);
  }
  // Removes the leaf of `subtype`; returns whether there was a leaf.
  bool subTypeRuleDel(Subtype subtype) const { return subTypeRule_.del(subtype); }
  // Removes all leaves.
  void subTypeRuleDelAll() const { subTypeRule_.delAll(); }
  // Returns whether there is a leaf for `subtype`.
  bool subTypeRuleHas(Subtype subtype) const noexcept { return subTypeRule_.has(subtype); }
  // Returns the leaf of `subtype`; null if there is none.
  SubtypeRulePtr subTypeRule(Subtype subtype) const {
    return SubtypeRulePtr(subTypeRule_.find(subtype));
  }

  // Announces the rule. For a kind that is not announced it removes the rule's key instead, in
  // case somebody else inserted the key.
  void handleInitialized() final {
    if constexpr (Kind::announced) {
      this->template announce<Kind>(key());
    } else {
      this->template withdraw<Kind>(key());
    }
  }
  // Withdraws the rule, then removes all leaves. This order matters: plugins add one more leaf
  // when they are notified of the withdrawal, and this leaf must be removed with the others.
  void handleDel() final {
    this->template withdraw<Kind>(key());
    if constexpr (Kind::announced) subTypeRuleDelAll();
  }

 private:
  // Returns the key that names this rule.
  typename Kind::Key key() const {
    return typename Kind::Key(static_cast<const typename Kind::Rule*>(this));
  }

  mutable BgpParseExtCommRuleMap<Subtype, typename Kind::SubtypeRuleBase> subTypeRule_;
};

// Declares the type rule class of one kind. Each constructor must be the final class's own,
// because constructed() calls virtual functions.
#define TYPE_RULE(Class, Kind)                                                                 \
  class OV_EXPORT Class final : public BgpParseExtCommTypeRule<Kind> {                         \
    KIV_OBJECT(Class)                                                                          \
                                                                                               \
    /* Called by the reference count only. */                                                  \
    ~Class() override = default;                                                               \
                                                                                               \
   public:                                                                                     \
    /* Announces the rule. Plugins that watch the registry of `control` have added their  */   \
    /* leaves when the constructor returns. Throws what an observer throws.               */   \
    explicit Class(const BgpParseExtCommControl& control) : BgpParseExtCommTypeRule(control) { \
      constructed();                                                                           \
    }                                                                                          \
  }

// The transitive two-octet AS type rule (0x00). Its fallback is an ExtCommAsNumber with a two-octet
// AS number.
TYPE_RULE(BgpParseExtCommTransTwoOctetAsRule, BgpParseKindTransTwoOctetAs);
// The transitive IPv4 address type rule (0x01). Its fallback is an ExtCommIpv4Address.
TYPE_RULE(BgpParseExtCommTransIpv4AddressRule, BgpParseKindTransIpv4Address);
// The transitive four-octet AS type rule (0x02). Its fallback is an ExtCommAsNumber with a
// four-octet AS number.
TYPE_RULE(BgpParseExtCommTransFourOctetAsRule, BgpParseKindTransFourOctetAs);
// The transitive opaque type rule (0x03). Its fallback is an ExtCommSubtyped.
TYPE_RULE(BgpParseExtCommTransOpaqueRule, BgpParseKindTransOpaque);
// The generic transitive type rule (0x80). Its fallback is an ExtCommSubtyped.
TYPE_RULE(BgpParseExtCommTransGenericRule, BgpParseKindTransGeneric);
// The generic transitive part 2 type rule (0x81). Its fallback is an ExtCommSubtyped.
TYPE_RULE(BgpParseExtCommTransGenericPart2Rule, BgpParseKindTransGenericPart2);
// The generic transitive part 3 type rule (0x82). Its fallback is an ExtCommSubtyped.
TYPE_RULE(BgpParseExtCommTransGenericPart3Rule, BgpParseKindTransGenericPart3);
// The non-transitive two-octet AS type rule (0x40). Its fallback is an ExtCommAsNumber with a
// two-octet AS number.
TYPE_RULE(BgpParseExtCommNonTransTwoOctetAsRule, BgpParseKindNonTransTwoOctetAs);
// The non-transitive IPv4 address type rule (0x41). Its fallback is an ExtCommIpv4Address.
TYPE_RULE(BgpParseExtCommNonTransIpv4AddressRule, BgpParseKindNonTransIpv4Address);
// The non-transitive four-octet AS type rule (0x42). Its fallback is an ExtCommAsNumber with a
// four-octet AS number.
TYPE_RULE(BgpParseExtCommNonTransFourOctetAsRule, BgpParseKindNonTransFourOctetAs);
// The non-transitive opaque type rule (0x43). Its fallback is an ExtCommSubtyped.
TYPE_RULE(BgpParseExtCommNonTransOpaqueRule, BgpParseKindNonTransOpaque);
// The transitive IPv6 address type rule (0x00 of 20-octet values). Its fallback is an
// ExtCommIp6Subtyped.
TYPE_RULE(BgpParseExtCommIp6TransRule, BgpParseKindIp6Trans);
// The non-transitive IPv6 address type rule (0x40 of 20-octet values). Never announced, so that its
// values always become ExtCommIp6Subtyped.
TYPE_RULE(BgpParseExtCommIp6NonTransRule, BgpParseKindIp6NonTrans);
#undef TYPE_RULE

}  // namespace Routing::Bgp

#endif
