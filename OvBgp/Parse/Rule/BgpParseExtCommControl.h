// What every rule is built with.
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

// Names the registry in which the rules built with it announce themselves; holds a
// reference to it. Without one, rules announce nothing, so that no plugin finds
// them. Equal if the registry is the same one.
class BgpParseExtCommControl {
 public:
  BgpParseExtCommControl() = default;
  explicit BgpParseExtCommControl(Kiv::Ptr<const BgpParseExtCommRuleCollections> ruleCollections)
      : ruleCollections_(std::move(ruleCollections)) {}

  const Kiv::Ptr<const BgpParseExtCommRuleCollections>& ruleCollections() const noexcept {
    return ruleCollections_;
  }
  explicit operator bool() const noexcept { return static_cast<bool>(ruleCollections_); }

  friend bool operator==(const BgpParseExtCommControl& a, const BgpParseExtCommControl& b) {
    return a.ruleCollections_ == b.ruleCollections_;
  }
  // The text form of the pointer: Kiv/RawPointer.h.
  friend Kiv::String valueToStrep(const BgpParseExtCommControl& control) {
    return Kiv::valueToStrep(Kiv::RawPointer{control.ruleCollections_.ptr()});
  }
  friend std::ostream& operator<<(std::ostream& out, const BgpParseExtCommControl& control) {
    return out << valueToStrep(control);
  }

 private:
  Kiv::Ptr<const BgpParseExtCommRuleCollections> ruleCollections_;
};

}  // namespace Routing::Bgp

#endif
