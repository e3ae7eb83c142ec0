// The subtype rules, or leaves: the lowest level of the rule tree, which builds typed objects.
//
// This header has the base class of the leaves of each kind. Plugins define the leaves themselves.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMSUBTYPERULES_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMSUBTYPERULES_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

// A rule for all values with one type octet and one subtype octet. Immutable, so any number of
// threads may call inhale() at the same time.
template <class Kind>
class BgpParseExtCommSubtypeRule : public BgpParseExtCommRuleBase {
 public:
  KIV_POINTERS(typename Kind::SubtypeRuleBase)
  // The octets before parsing.
  using Content = typename Kind::Content;
  // The base class of the objects that the leaf builds.
  using Object = typename Kind::Object;

  // Builds a leaf for values of subtype `pktSubtype`.
  BgpParseExtCommSubtypeRule(const BgpParseExtCommControl& control,
                             typename Kind::Subtype pktSubtype)
      : BgpParseExtCommRuleBase(control), pktSubtype_(pktSubtype) {}

  // Returns the subtype octet under which the type rule stores this leaf.
  typename Kind::Subtype pktSubtype() const noexcept { return pktSubtype_; }

  // Returns a new object for `content`, not interned, or null to leave the value to the type
  // rule's fallback. It must not change the tree.
  virtual Kiv::Ptr<Object> inhale(const Content& content) const = 0;

 private:
  const typename Kind::Subtype pktSubtype_;
};

// A leaf for subtype `pktSubtype` whose inhale() calls factory(content, arguments...).
template <class SubtypeRuleBase, auto pktSubtype, auto factory, auto... arguments>
class BgpParseExtCommLeafRule : public SubtypeRuleBase {
 public:
  // Keeps a copy of `control`.
  explicit BgpParseExtCommLeafRule(const BgpParseExtCommControl& control)
      : SubtypeRuleBase(control, pktSubtype) {}

  // Returns the factory's result.
  Kiv::Ptr<typename SubtypeRuleBase::Object> inhale(
      const typename SubtypeRuleBase::Content& content) const final {
    return factory(content, arguments...);
  }
};

// Declares the leaf class `Class` on BgpParseExtCommLeafRule<SubtypeRuleBase, subtype, factory,
// arguments...>. The last three are the variadic arguments. KIV_OBJECT_DEFINE(Class) belongs into
// a source file.
#define BGP_PARSE_LEAF_RULE(Class, SubtypeRuleBase, ...)                               \
  class OV_EXPORT Class final                                                          \
      : public ::Routing::Bgp::BgpParseExtCommLeafRule<SubtypeRuleBase, __VA_ARGS__> { \
    KIV_OBJECT(Class)                                                                  \
                                                                                       \
    /* Called by the reference count only. */                                          \
    ~Class() override = default;                                                       \
                                                                                       \
   public:                                                                             \
    /* Keeps a copy of the control, which is the only argument. */                     \
    using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;                            \
  }

// Declares the leaf base of one kind.
#define SUBTYPE_RULE_BASE(Class, Kind)                               \
  class OV_EXPORT Class : public BgpParseExtCommSubtypeRule<Kind> {  \
   public:                                                           \
    /* The arguments are the control and the subtype of the leaf. */ \
    using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;    \
  }

// The base of leaves below the transitive two-octet AS type rule (0x00).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransTwoOctetAsRuleBase, BgpParseKindTransTwoOctetAs);
// The base of leaves below the transitive IPv4 address type rule (0x01).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransIpv4AddressRuleBase, BgpParseKindTransIpv4Address);
// The base of leaves below the transitive four-octet AS type rule (0x02).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransFourOctetAsRuleBase, BgpParseKindTransFourOctetAs);
// The base of leaves below the transitive opaque type rule (0x03).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransOpaqueRuleBase, BgpParseKindTransOpaque);
// The base of leaves below the generic transitive type rule (0x80).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransGenericRuleBase, BgpParseKindTransGeneric);
// The base of leaves below the generic transitive part 2 type rule (0x81).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransGenericPart2RuleBase, BgpParseKindTransGenericPart2);
// The base of leaves below the generic transitive part 3 type rule (0x82).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeTransGenericPart3RuleBase, BgpParseKindTransGenericPart3);
// The base of leaves below the non-transitive two-octet AS type rule (0x40).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase, BgpParseKindNonTransTwoOctetAs);
// The base of leaves below the non-transitive IPv4 address type rule (0x41).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeNonTransIpv4AddressRuleBase,
                  BgpParseKindNonTransIpv4Address);
// The base of leaves below the non-transitive four-octet AS type rule (0x42).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeNonTransFourOctetAsRuleBase,
                  BgpParseKindNonTransFourOctetAs);
// The base of leaves below the non-transitive opaque type rule (0x43).
SUBTYPE_RULE_BASE(BgpParseExtComSubTypeNonTransOpaqueRuleBase, BgpParseKindNonTransOpaque);
// The base of leaves below the transitive IPv6 address type rule (0x00 of 20-octet values).
SUBTYPE_RULE_BASE(BgpParseExtCommIp6SubTypeTransRuleBase, BgpParseKindIp6Trans);
// The base of leaves below the non-transitive IPv6 address type rule (0x40 of 20-octet values).
SUBTYPE_RULE_BASE(BgpParseExtCommIp6SubTypeNonTransRuleBase, BgpParseKindIp6NonTrans);
#undef SUBTYPE_RULE_BASE

}  // namespace Routing::Bgp

#endif
