// BgpParseExtCommRuleCollections: the registry in which the nodes of rule trees announce
// themselves.
//
// Plugins observe the registry and so learn to which nodes they can add rules.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULECOLLECTIONS_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULECOLLECTIONS_H

#include "Kiv/Export.h"
#include "Kiv/NotifieeList.h"
#include "Kiv/NotifyingSet.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleKeys.h"

namespace Routing::Bgp {

// The set type of one collection: keys that notify observers of every change.
template <class Kind>
using BgpParseExtCommRuleSet = Kiv::NotifyingSet<typename Kind::Key, typename Kind::Key::Hash>;

// One set for each kind of a BgpParseKindList. All sets notify the observers of one owner.
template <class Kinds>
class BgpParseExtCommRuleSets;

// The set of one kind as a base class, so that a cast selects it at compile time.
template <class Kind>
struct BgpParseExtCommRuleSetOf {
  // Builds an empty set that notifies the observers of `owner`.
  explicit BgpParseExtCommRuleSetOf(const Kiv::PtrInterface& owner)
      : keys(owner, Kind::attribute) {}
  // The keys of the nodes that are announced now.
  BgpParseExtCommRuleSet<Kind> keys;
};

// The only specialisation: takes the kinds out of the list.
template <class... Kind>
class BgpParseExtCommRuleSets<BgpParseKindList<Kind...>> : BgpParseExtCommRuleSetOf<Kind>... {
 public:
  // Builds empty sets that notify the observers of `owner`, whose member this object is.
  explicit BgpParseExtCommRuleSets(const Kiv::PtrInterface& owner)
      : BgpParseExtCommRuleSetOf<Kind>(owner)... {}
  // Returns the set of kind `K`.
  template <class K>
  BgpParseExtCommRuleSet<K>& of() {
    return static_cast<BgpParseExtCommRuleSetOf<K>&>(*this).keys;
  }
};

// Declares the operations of the collection of `Kind`. All names are spelled out as arguments, so
// that a text search for a name finds it.
#define RULE_COLLECTION(Kind, all, addOne, delOne, delEach, hasOne)                          \
  /* The keys of the nodes that are announced now, in no particular order. Iterate over a */ \
  /* copy, all().keys(), if nodes may be announced or withdrawn during the loop.          */ \
  const BgpParseExtCommRuleSet<Kind>& all() const noexcept { return keysOf<Kind>(); }        \
  /* Inserts `key`. Returns false, and notifies nobody, if it is already present. Throws  */ \
  /* std::bad_alloc, and what an observer throws; the key is then absent.                 */ \
  bool addOne(const Kind::Key& key) const { return keysOf<Kind>().add(key); }                \
  /* Removes `key`. Returns false, and notifies nobody, if it is absent. */                  \
  bool delOne(const Kind::Key& key) const { return keysOf<Kind>().del(key); }                \
  /* Removes every key, with one notification each. */                                       \
  void delEach() const {                                                                     \
    const PtrConst self(this); /* an observer may release the last other reference */        \
    keysOf<Kind>().delAll();                                                                 \
  }                                                                                          \
  /* Returns whether `key` is present. */                                                    \
  bool hasOne(const Kind::Key& key) const { return keysOf<Kind>().has(key); }

// One set of keys for each kind of node. A node inserts its key when it is fully constructed and
// removes the key before its destruction. Observers, registered with notifieeList(), are notified
// after the change; attribute() is the number of the collection, key() the node's key. Insertion
// and removal give the same notification; xHas(key) distinguishes them.
//
// Rules and plugins share a registry and hold it as const. The operations that change the sets are
// const as well, because announcing a node does not change what the registry is. The registry holds
// no reference to nodes or observers. xIs() throws what an observer throws, and then has undone the
// insertion; xDel() and xDelAll() trace it (the rule is in Kiv/NotifieeList.h). Owner thread only.
class OV_EXPORT BgpParseExtCommRuleCollections final : public Kiv::PtrInterface {
  KIV_OBJECT(BgpParseExtCommRuleCollections)

  // Called by the reference count only.
  ~BgpParseExtCommRuleCollections() override = default;

 public:
  // Collection 130: root rules.
  RULE_COLLECTION(BgpParseKindRoot, extendedCommunityTypeRuleInstance,
                  extendedCommunityTypeRuleInstanceIs, extendedCommunityTypeRuleInstanceDel,
                  extendedCommunityTypeRuleInstanceDelAll, extendedCommunityTypeRuleInstanceHas)
  // Collection 131: transitive two-octet AS type rules (0x00).
  RULE_COLLECTION(BgpParseKindTransTwoOctetAs, extendedCommSubTypeTransTwoOctetAsRuleInstance,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceIs,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceDel,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeTransTwoOctetAsRuleInstanceHas)
  // Collection 132: transitive IPv4 address type rules (0x01).
  RULE_COLLECTION(BgpParseKindTransIpv4Address, extendedCommSubTypeTransIpv4AddressRuleInstance,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceIs,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceDel,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceDelAll,
                  extendedCommSubTypeTransIpv4AddressRuleInstanceHas)
  // Collection 133: transitive four-octet AS type rules (0x02).
  RULE_COLLECTION(BgpParseKindTransFourOctetAs, extendedCommSubTypeTransFourOctetAsRuleInstance,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceIs,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceDel,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeTransFourOctetAsRuleInstanceHas)
  // Collection 134: transitive opaque type rules (0x03).
  RULE_COLLECTION(BgpParseKindTransOpaque, extendedCommSubTypeTransOpaqueRuleInstance,
                  extendedCommSubTypeTransOpaqueRuleInstanceIs,
                  extendedCommSubTypeTransOpaqueRuleInstanceDel,
                  extendedCommSubTypeTransOpaqueRuleInstanceDelAll,
                  extendedCommSubTypeTransOpaqueRuleInstanceHas)
  // Collection 135: generic transitive type rules (0x80).
  RULE_COLLECTION(BgpParseKindTransGeneric, extendedCommSubTypeTransGenericRuleInstance,
                  extendedCommSubTypeTransGenericRuleInstanceIs,
                  extendedCommSubTypeTransGenericRuleInstanceDel,
                  extendedCommSubTypeTransGenericRuleInstanceDelAll,
                  extendedCommSubTypeTransGenericRuleInstanceHas)
  // Collection 136: generic transitive part 2 type rules (0x81).
  RULE_COLLECTION(BgpParseKindTransGenericPart2, extendedCommSubTypeTransGenericPart2RuleInstance,
                  extendedCommSubTypeTransGenericPart2RuleInstanceIs,
                  extendedCommSubTypeTransGenericPart2RuleInstanceDel,
                  extendedCommSubTypeTransGenericPart2RuleInstanceDelAll,
                  extendedCommSubTypeTransGenericPart2RuleInstanceHas)
  // Collection 137: generic transitive part 3 type rules (0x82).
  RULE_COLLECTION(BgpParseKindTransGenericPart3, extendedCommSubTypeTransGenericPart3RuleInstance,
                  extendedCommSubTypeTransGenericPart3RuleInstanceIs,
                  extendedCommSubTypeTransGenericPart3RuleInstanceDel,
                  extendedCommSubTypeTransGenericPart3RuleInstanceDelAll,
                  extendedCommSubTypeTransGenericPart3RuleInstanceHas)
  // Collection 138: non-transitive two-octet AS type rules (0x40).
  RULE_COLLECTION(BgpParseKindNonTransTwoOctetAs, extendedCommSubTypeNonTransTwoOctetAsRuleInstance,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceIs,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceDel,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeNonTransTwoOctetAsRuleInstanceHas)
  // Collection 139: non-transitive IPv4 address type rules (0x41).
  RULE_COLLECTION(BgpParseKindNonTransIpv4Address,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstance,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceIs,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceDel,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceDelAll,
                  extendedCommSubTypeNonTransIpv4AddressRuleInstanceHas)
  // Collection 140: non-transitive four-octet AS type rules (0x42).
  RULE_COLLECTION(BgpParseKindNonTransFourOctetAs,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstance,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceIs,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceDel,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceDelAll,
                  extendedCommSubTypeNonTransFourOctetAsRuleInstanceHas)
  // Collection 141: non-transitive opaque type rules (0x43).
  RULE_COLLECTION(BgpParseKindNonTransOpaque, extendedCommSubTypeNonTransOpaqueRuleInstance,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceIs,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceDel,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceDelAll,
                  extendedCommSubTypeNonTransOpaqueRuleInstanceHas)
  // Collection 142: transitive IPv6 address type rules.
  RULE_COLLECTION(BgpParseKindIp6Trans, extendedCommIp6SubTypeTransRuleInstance,
                  extendedCommIp6SubTypeTransRuleInstanceIs,
                  extendedCommIp6SubTypeTransRuleInstanceDel,
                  extendedCommIp6SubTypeTransRuleInstanceDelAll,
                  extendedCommIp6SubTypeTransRuleInstanceHas)
  // Collection 143: non-transitive IPv6 address type rules. Empty, because rules of this
  // kind never announce themselves.
  RULE_COLLECTION(BgpParseKindIp6NonTrans, extendedCommIp6SubTypeNonTransRuleInstance,
                  extendedCommIp6SubTypeNonTransRuleInstanceIs,
                  extendedCommIp6SubTypeNonTransRuleInstanceDel,
                  extendedCommIp6SubTypeNonTransRuleInstanceDelAll,
                  extendedCommIp6SubTypeNonTransRuleInstanceHas)

  // Returns the collection of `Kind`, for code that is a template over the kinds.
  template <class Kind>
  BgpParseExtCommRuleSet<Kind>& keysOf() const noexcept {
    return keys_.of<Kind>();
  }

  // Returns the observers, owned by the registry. Its destructor unregisters those that remain.
  Kiv::NotifieeList* notifieeList() const noexcept override { return &observers_; }

 private:
  // The observers of all collections.
  mutable Kiv::NotifieeList observers_;
  mutable BgpParseExtCommRuleSets<BgpParseNodeKinds> keys_{*this};
};
#undef RULE_COLLECTION

// Returns a new, empty registry with notification on. Throws std::bad_alloc.
OV_EXPORT BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory();

}  // namespace Routing::Bgp

#endif
