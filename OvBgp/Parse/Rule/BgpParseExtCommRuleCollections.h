// The registry of the rule tree's nodes: how those who can add to the tree learn
// of what there is to add to.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULECOLLECTIONS_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULECOLLECTIONS_H

#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingSet.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleKeys.h"

namespace Routing::Bgp {

template <class Kind>
using BgpParseExtCommRuleSet = Kiv::NotifyingSet<typename Kind::Key, typename Kind::Key::Hash>;

// One set for each kind, all with the same observers.
template <class Kinds>
class BgpParseExtCommRuleSets;

template <class Kind>
struct BgpParseExtCommRuleSetOf {
  explicit BgpParseExtCommRuleSetOf(const Kiv::PtrInterface& owner)
      : keys(owner, Kind::attribute) {}
  BgpParseExtCommRuleSet<Kind> keys;
};

template <class... Kind>
class BgpParseExtCommRuleSets<BgpParseKindList<Kind...>> : BgpParseExtCommRuleSetOf<Kind>... {
 public:
  explicit BgpParseExtCommRuleSets(const Kiv::PtrInterface& owner)
      : BgpParseExtCommRuleSetOf<Kind>(owner)... {}
  template <class K>
  BgpParseExtCommRuleSet<K>& of() {
    return static_cast<BgpParseExtCommRuleSetOf<K>&>(*this).keys;
  }
};

// Declares the operations of one collection. Their names are arguments, in full,
// so that a search for one finds its line.
#define RULE_COLLECTION(Kind, all, addOne, delOne, delEach, hasOne)                   \
  const BgpParseExtCommRuleSet<Kind>& all() const noexcept { return keysOf<Kind>(); } \
  bool addOne(const Kind::Key& key) const { return keysOf<Kind>().add(key); }         \
  bool delOne(const Kind::Key& key) const { return keysOf<Kind>().del(key); }         \
  void delEach() const {                                                              \
    const PtrConst self(this); /* an observer may let go of the registry */           \
    keysOf<Kind>().delAll();                                                          \
  }                                                                                   \
  bool hasOne(const Kind::Key& key) const { return keysOf<Kind>().has(key); }

// A set of keys for each kind of node. A node enters its key when it is complete
// and takes it back before it goes; observers (notifieeList()) hear of both alike,
// under the number of the collection, after the change.
//
// Everyone holds the registry as const, and what it lists changes nevertheless:
// it is a meeting place, not a value. Owner thread only.
//
// For each collection X: X() to walk (a copy, X().keys(), if nodes may come and go
// meanwhile), XIs(key) and XDel(key), which return whether anything changed and
// only then tell, XDelAll() and XHas(key).
class OV_EXPORT BgpParseExtCommRuleCollections final : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommRuleCollections)

 public:
  RULE_COLLECTION(BgpParseKindRoot, extendedCommunityTypeRuleInstance,
                  extendedCommunityTypeRuleInstanceIs, extendedCommunityTypeRuleInstanceDel,
                  extendedCommunityTypeRuleInstanceDelAll, extendedCommunityTypeRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransTwoOctetAs, extendedCommSubTypeTransTwoOctetAsRuleInstance,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceIs,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceDel,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransIpv4Address, extendedCommSubTypeTransIpv4AddressRuleInstance,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceIs,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceDel,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceDelAll,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransFourOctetAs, extendedCommSubTypeTransFourOctetAsRuleInstance,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceIs,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceDel,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransOpaque, extendedCommSubTypeTransOpaqueRuleInstance,
                  extendedCommSubTypeTransOpaqueRuleInstanceIs,
                  extendedCommSubTypeTransOpaqueRuleInstanceDel,
                  extendedCommSubTypeTransOpaqueRuleInstanceDelAll,
                  extendedCommSubTypeTransOpaqueRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransGeneric, extendedCommSubTypeTransGenericRuleInstance,
                  extendedCommSubTypeTransGenericRuleInstanceIs,
                  extendedCommSubTypeTransGenericRuleInstanceDel,
                  extendedCommSubTypeTransGenericRuleInstanceDelAll,
                  extendedCommSubTypeTransGenericRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransGenericPart2, extendedCommSubTypeTransGenericPart2RuleInstance,
                  extendedCommSubTypeTransGenericPart2RuleInstanceIs,
                  extendedCommSubTypeTransGenericPart2RuleInstanceDel,
                  extendedCommSubTypeTransGenericPart2RuleInstanceDelAll,
                  extendedCommSubTypeTransGenericPart2RuleInstanceHas)
  RULE_COLLECTION(BgpParseKindTransGenericPart3, extendedCommSubTypeTransGenericPart3RuleInstance,
                  extendedCommSubTypeTransGenericPart3RuleInstanceIs,
                  extendedCommSubTypeTransGenericPart3RuleInstanceDel,
                  extendedCommSubTypeTransGenericPart3RuleInstanceDelAll,
                  extendedCommSubTypeTransGenericPart3RuleInstanceHas)
  RULE_COLLECTION(BgpParseKindNonTransTwoOctetAs, extendedCommSubTypeNonTransTwoOctetAsRuleInstance,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceIs,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceDel,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindNonTransIpv4Address,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstance,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceIs,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceDel,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceDelAll,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindNonTransFourOctetAs,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstance,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceIs,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceDel,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindNonTransOpaque, extendedCommSubTypeNonTransOpaqueRuleInstance,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceIs,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceDel,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceDelAll,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindIp6Trans, extendedCommIp6SubTypeTransRuleInstance,
                  extendedCommIp6SubTypeTransRuleInstanceIs,
                  extendedCommIp6SubTypeTransRuleInstanceDel,
                  extendedCommIp6SubTypeTransRuleInstanceDelAll,
                  extendedCommIp6SubTypeTransRuleInstanceHas)
  RULE_COLLECTION(BgpParseKindIp6NonTrans, extendedCommIp6SubTypeNonTransRuleInstance,
                  extendedCommIp6SubTypeNonTransRuleInstanceIs,
                  extendedCommIp6SubTypeNonTransRuleInstanceDel,
                  extendedCommIp6SubTypeNonTransRuleInstanceDelAll,
                  extendedCommIp6SubTypeNonTransRuleInstanceHas)

  // The collection of `Kind`, for code that is written for every kind.
  template <class Kind>
  BgpParseExtCommRuleSet<Kind>& keysOf() const noexcept {
    return keys_.of<Kind>();
  }

  Kiv::NotifieeList* notifieeList() const noexcept override { return &observers_; }

 private:
  mutable Kiv::NotifieeList observers_;
  mutable BgpParseExtCommRuleSets<BgpParseNodeKinds> keys_{*this};
};
#undef RULE_COLLECTION

OV_EXPORT BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory();

}  // namespace Routing::Bgp

#endif
