// The base of all parse rules, and how rules are made and unmade.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEBASE_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEBASE_H

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"

namespace Routing::Bgp {

// A node of the rule tree. Make one with bgpParseExtCommRuleIs, or with new for a
// Kiv::Ptr. A rule is announced when it is complete and held, since whoever hears of
// it calls it and may hold it (but not, while it is being built, if another that
// hears of it throws). For the same reason it is withdrawn before its destruction
// begins.
//
// Threads: any number may parse at a time, while none changes the tree.
class OV_EXPORT BgpParseExtCommRuleBase : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(BgpParseExtCommRuleBase)

  explicit BgpParseExtCommRuleBase(const BgpParseExtCommControl& control)
      : parseControl_(control) {}

  const BgpParseExtCommControl& parseControl() const noexcept { return parseControl_; }

  // Run when the rule has been built, and when it is about to go; a rule that takes
  // children announces and withdraws itself. Built is a rule whose constructor says so
  // (constructed), or else one that bgpParseExtCommRuleIs has made.
  virtual void handleInitialized() {}
  virtual void handleDel() {}

  // Runs handleDel() with a reference held. An observer that takes one then, and
  // keeps it, keeps the rule, which is announced no more.
  void zeroReferencesIs() noexcept final;

 protected:
  // The last that the constructor of a final class calls: runs handleInitialized()
  // with a reference held. What that throws ends the rule, which nobody may hold then.
  void constructed();

  // Enters `key` in the registry, or takes it back.
  template <class Kind>
  void announce(const typename Kind::Key& key) const {
    if (parseControl_) parseControl_.ruleCollections()->template keysOf<Kind>().add(key);
  }
  template <class Kind>
  void withdraw(const typename Kind::Key& key) const {
    if (parseControl_) parseControl_.ruleCollections()->template keysOf<Kind>().del(key);
  }

 private:
  template <class Rule>
  friend Kiv::Ptr<Rule> bgpParseExtCommRuleIs(const BgpParseExtCommControl& control);

  // Runs handleInitialized(), once.
  void begin();
  void handleDelQuietly() noexcept;

  const BgpParseExtCommControl parseControl_;
  bool hasBegun_ = false;
};

// A new rule, announced, with notification switched on.
template <class Rule>
Kiv::Ptr<Rule> bgpParseExtCommRuleIs(const BgpParseExtCommControl& control) {
  Kiv::Ptr<Rule> rule(new Rule(control));
  rule->hasNotificationActiveIs(true);
  rule->begin();
  return rule;
}

}  // namespace Routing::Bgp

#endif
