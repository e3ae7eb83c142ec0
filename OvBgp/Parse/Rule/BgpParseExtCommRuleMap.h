// The children of one node of the rule tree, by the octet that selects them.
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

// Keyed by an enumeration of octets. An array up to the highest key in use: a
// lookup is a comparison and a load, and most nodes have few and low keys, so that
// the arrays of a whole tree take a few kilobytes.
//
// Rules are released only when the map is as it should be, since what goes may
// call back. Lookups change nothing, reference counts included.
template <Kiv::RegisteredEnum Key, class Rule>
class BgpParseExtCommRuleMap {
 public:
  using RulePtr = Kiv::Ptr<const Rule>;

  // Replaces what is there. Throws Kiv::RangeException for a key beyond the marker
  // that follows the octets.
  void is(Key key, RulePtr rule) {
    const U32 at = Kiv::enumValue(key);
    if (at > keyMax) {
      throw Kiv::RangeException("value > " + std::to_string(keyMax) + " not allowed");
    }
    if (at >= rules_.size()) rules_.resize(at + 1);
    rules_[at].swap(rule);
  }
  // Whether there was one.
  bool del(Key key) {
    if (!find(key)) return false;
    const RulePtr gone = std::move(rules_[Kiv::enumValue(key)]);
    return true;
  }
  void delAll() {
    std::vector<RulePtr> gone;
    gone.swap(rules_);
  }

  // Null if there is none.
  const Rule* find(Key key) const noexcept {
    const U32 at = Kiv::enumValue(key);
    return at < rules_.size() ? rules_[at].ptr() : nullptr;
  }

  // What the rule that `octet` selects makes of `content`; null if the octet has no
  // name (which is found out first, so that a rule under a mere marker is never
  // reached), or no rule, or the rule declines.
  template <class Content>
  auto inhale(U8 octet, const Content& content) const {
    using ObjectPtr = decltype(std::declval<const Rule&>().inhale(content));
    const Key key{octet};
    if (!bgpIsValidEnumMember(key)) return ObjectPtr();
    const Rule* const rule = find(key);
    return rule ? rule->inhale(content) : ObjectPtr();
  }

 private:
  static constexpr U32 keyMax = 256;

  std::vector<RulePtr> rules_;
};

// A rule that is to be put into a map, which must not be null.
template <class RulePtr>
const RulePtr& bgpParseExtCommRuleNeeded(const RulePtr& rule) {
  if (!rule) throw Kiv::NullArgumentException("a rule is needed, not a null");
  return rule;
}

}  // namespace Routing::Bgp

#endif
