// BgpParseExtCommRuleMap: the children of one node of the rule tree, indexed by type or subtype
// octet.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEMAP_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEMAP_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "BgpCommon/EnumText.h"
#include "Kiv/Enum.h"
#include "Kiv/Exception.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"

namespace Routing::Bgp {

// A map from an enumeration of octets to counted rules, stored as an array that is as long as the
// highest key in use. A lookup costs one comparison and one load. Most nodes have few children with
// low keys, so the arrays of a whole tree take a few kilobytes.
//
// Releasing a rule can run observers, and they may call this map again. Every operation therefore
// brings the map into its final state first and releases the removed rules last. Lookups take no
// reference, so that parsing threads share the tree without writing to it.
template <Kiv::RegisteredEnum Key, class Rule>
class BgpParseExtCommRuleMap {
 public:
  // A counted pointer to a child.
  using RulePtr = Kiv::Ptr<const Rule>;

  // Stores `rule` under `key` and releases any previous rule. Throws Kiv::RangeException if `key`
  // is above 256, the "Unknown" marker of every octet enumeration, and std::bad_alloc.
  void is(Key key, RulePtr rule) {
    const U32 at = Kiv::enumValue(key);
    if (at > keyMax) {
      throw Kiv::RangeException("value > " + std::to_string(keyMax) + " not allowed");
    }
    if (at >= rules_.size()) rules_.resize(at + 1);
    // The parameter releases the previous rule when the function returns.
    rules_[at].swap(rule);
  }
  // Removes and releases the rule of `key`; returns whether there was a rule.
  bool del(Key key) {
    if (!find(key)) return false;
    const RulePtr gone = std::move(rules_[Kiv::enumValue(key)]);
    return true;
  }
  // Removes all rules, then releases them.
  void delAll() {
    std::vector<RulePtr> gone;
    gone.swap(rules_);
  }

  // Returns the rule of `key` without a reference; null if there is none.
  const Rule* find(Key key) const noexcept {
    const U32 at = Kiv::enumValue(key);
    return at < rules_.size() ? rules_[at].ptr() : nullptr;
  }

  // Whether there is a rule for `key`.
  bool has(Key key) const noexcept { return find(key) != nullptr; }

  // Returns the object that the child for `octet` builds of `content`. Returns null if the octet
  // has no name in the enumeration, if it has no rule, or if the rule returns null. Names are
  // checked first, so a rule stored under the marker 256 or under an unnamed octet is never called.
  template <class Content>
  auto inhale(U8 octet, const Content& content) const {
    using ObjectPtr = decltype(std::declval<const Rule&>().inhale(content));
    const Key key{octet};
    if (!bgpIsValidEnumMember(key)) return ObjectPtr();
    const Rule* const rule = find(key);
    return rule ? rule->inhale(content) : ObjectPtr();
  }

 private:
  // The marker that follows the octets.
  static constexpr U32 keyMax = 256;

  std::vector<RulePtr> rules_;  // by key; null where there is no rule
};

// Returns `rule`; throws Kiv::NullArgumentException if it is null. Callers use it before they read
// the rule's key.
template <class RulePtr>
const RulePtr& bgpParseExtCommRuleNeeded(const RulePtr& rule) {
  if (!rule) throw Kiv::NullArgumentException("a rule is needed, not a null");
  return rule;
}

}  // namespace Routing::Bgp

#endif
