// The bases of the subtype rules, one a kind: a subtype rule, or leaf, is what
// finally builds the typed object.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMSUBTYPERULES_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMSUBTYPERULES_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Value/ExtComm.h"
#include "OvBgp/Value/ExtCommIp6.h"

namespace Routing::Bgp {

// What all of them are. Immutable.
template <class Kind>
class BgpParseExtCommSubtypeRule : public BgpParseExtCommRuleBase {
 public:
  KIV_POINTERS(typename Kind::SubtypeRuleBase)
  using Content = typename Kind::Content;
  using Object = typename Kind::Object;

  BgpParseExtCommSubtypeRule(const BgpParseExtCommControl& control,
                             typename Kind::Subtype pktSubtype)
      : BgpParseExtCommRuleBase(control), pktSubtype_(pktSubtype) {}

  // Where the rule hangs below its type rule.
  typename Kind::Subtype pktSubtype() const noexcept { return pktSubtype_; }

  // A new object of `content`, not interned; null leaves the content to the type
  // rule's fallback. Must not change the tree.
  virtual Kiv::Ptr<Object> inhale(const Content& content) const = 0;

 private:
  const typename Kind::Subtype pktSubtype_;
};

// A leaf that calls `factory` with the content and `arguments`.
template <class SubtypeRuleBase, auto pktSubtype, auto factory, auto... arguments>
class BgpParseExtCommLeafRule : public SubtypeRuleBase {
 public:
  explicit BgpParseExtCommLeafRule(const BgpParseExtCommControl& control)
      : SubtypeRuleBase(control, pktSubtype) {}

  Kiv::Ptr<typename SubtypeRuleBase::Object> inhale(
      const typename SubtypeRuleBase::Content& content) const final {
    return factory(content, arguments...);
  }
};

class OV_EXPORT BgpParseExtComSubTypeTransTwoOctetAsRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransTwoOctetAs> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransIpv4AddressRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransIpv4Address> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransFourOctetAsRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransFourOctetAs> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransOpaqueRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransOpaque> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransGenericRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransGeneric> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransGenericPart2RuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransGenericPart2> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeTransGenericPart3RuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindTransGenericPart3> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindNonTransTwoOctetAs> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeNonTransIpv4AddressRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindNonTransIpv4Address> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeNonTransFourOctetAsRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindNonTransFourOctetAs> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtComSubTypeNonTransOpaqueRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindNonTransOpaque> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtCommIp6SubTypeTransRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindIp6Trans> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

class OV_EXPORT BgpParseExtCommIp6SubTypeNonTransRuleBase
    : public BgpParseExtCommSubtypeRule<BgpParseKindIp6NonTrans> {
 public:
  using BgpParseExtCommSubtypeRule::BgpParseExtCommSubtypeRule;
};

}  // namespace Routing::Bgp

#endif
