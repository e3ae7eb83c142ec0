// The argument of every parse rule's constructor: the registry in which the rule announces itself.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMCONTROL_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMCONTROL_H

#include <ostream>
#include <utility>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/RawPointer.h"
#include "Kiv/String.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"

namespace Routing::Bgp {

// A control connects a rule tree with the plugins that observe one registry:
//
//   auto registry = bgpParseExtCommRuleCollectionsFactory();
//   auto root = bgpParseExtendedCommunityRuleFactory(BgpParseExtCommControl(registry));
//
// The class is a plain value with one counted reference to a registry. Every rule keeps a copy, so
// the registry lives at least as long as the rules. Rules with an empty control announce nothing,
// and no plugin can find them.
class BgpParseExtCommControl {
 public:
  // Builds an empty control, without a registry.
  BgpParseExtCommControl() = default;
  // Takes a reference to `ruleCollections`; null gives an empty control.
  explicit BgpParseExtCommControl(Kiv::Ptr<const BgpParseExtCommRuleCollections> ruleCollections)
      : ruleCollections_(std::move(ruleCollections)) {}

  // Returns the registry; null if the control is empty.
  const Kiv::Ptr<const BgpParseExtCommRuleCollections>& ruleCollections() const noexcept {
    return ruleCollections_;
  }
  // Returns whether the control has a registry.
  explicit operator bool() const noexcept { return static_cast<bool>(ruleCollections_); }

  // Compares the addresses of the registries, not their contents.
  friend bool operator==(const BgpParseExtCommControl& a, const BgpParseExtCommControl& b) {
    return a.ruleCollections_ == b.ruleCollections_;
  }
  // Returns the registry's address as text, in the format of Kiv/RawPointer.h.
  friend Kiv::String valueToStrep(const BgpParseExtCommControl& control) {
    return Kiv::valueToStrep(Kiv::RawPointer{control.ruleCollections_.ptr()});
  }
  // Writes the text of valueToStrep().
  friend std::ostream& operator<<(std::ostream& out, const BgpParseExtCommControl& control) {
    return out << valueToStrep(control);
  }

 private:
  Kiv::Ptr<const BgpParseExtCommRuleCollections> ruleCollections_;
};

}  // namespace Routing::Bgp

#endif
