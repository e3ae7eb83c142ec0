// BgpParseExtCommRuleBase: the base class of all parse rules, with their construction and
// destruction protocol.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEBASE_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMRULEBASE_H

#include <utility>

#include "Kiv/Export.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"

namespace Routing::Bgp {

// A node of the rule tree: the root, a type rule or a leaf.
//
// A rule is announced only when it is fully constructed and somebody owns a reference, because
// observers call it and may keep a reference. If an observer throws during construction, no
// observer may keep a reference, because the rule is then destroyed. For the same reason a rule is
// withdrawn from the registry before its destructor starts, when its last reference is released. An
// observer that throws during a withdrawal does not stop it; Kiv/NotifieeList.h has the rule.
//
// Only the reference count destroys rules. The destructors of the library's rules are not public,
// so that nobody can declare a rule on the stack or in a smart pointer of the standard library: it
// would be destroyed without being withdrawn, and plugins would use freed memory. A rule class of
// an application does the same if it calls constructed().
//
// Create rules with bgpParseExtCommRuleIs(), or with `new` for a Kiv::Ptr. Any number of threads
// may parse at the same time as long as no thread changes the tree.
class OV_EXPORT BgpParseExtCommRuleBase : public Kiv::PtrInterface {
 public:
  KIV_POINTERS(BgpParseExtCommRuleBase)

  // Keeps a copy of `control`, which holds a reference to the registry.
  explicit BgpParseExtCommRuleBase(const BgpParseExtCommControl& control)
      : parseControl_(control) {}

  // Returns the control that the rule was constructed with; it never changes.
  const BgpParseExtCommControl& parseControl() const noexcept { return parseControl_; }

  // Hook that runs once after construction: at the end of the constructor if the class calls
  // constructed() there, otherwise in bgpParseExtCommRuleIs(). Rules with children build and
  // announce themselves here; the default does nothing. It may throw what observers throw.
  virtual void handleInitialized() {}
  // Hook that runs when the last reference is released, before the destructor. Rules with children
  // withdraw their key and release their children here; the default does nothing.
  virtual void handleDel() {}

  // Called by the reference count at zero. Runs handleDel() with a temporary reference, so that
  // observers can use the rule. If an observer keeps a reference, the rule survives, but it is not
  // announced again. Exceptions of handleDel() are traced.
  void zeroReferencesIs() noexcept final;

 protected:
  // Stops the process if the rule was initialised but not withdrawn, because it was not destroyed
  // by the reference count. Its key would stay in the registry.
  ~BgpParseExtCommRuleBase() override;

  // Runs handleInitialized() with a temporary reference. Call it at the end of the constructor of
  // a final class, and nowhere else, because it calls virtual functions. If handleInitialized()
  // throws, the rule is withdrawn and the exception passed on.
  void constructed();

  // Inserts `key` into the registry's collection of `Kind`, which notifies observers. Does nothing
  // if the control is empty.
  template <class Kind>
  void announce(const typename Kind::Key& key) const {
    if (parseControl_) parseControl_.ruleCollections()->template keysOf<Kind>().add(key);
  }
  // Removes `key` from the registry's collection of `Kind`, which notifies observers if the key
  // was present. Does nothing if the control is empty.
  template <class Kind>
  void withdraw(const typename Kind::Key& key) const {
    if (parseControl_) parseControl_.ruleCollections()->template keysOf<Kind>().del(key);
  }

 private:
  template <class Rule>
  friend Kiv::Ptr<Rule> bgpParseExtCommRuleIs(const BgpParseExtCommControl& control);

  // Runs handleInitialized() unless it has run before.
  void begin();
  // Runs handleDel() and traces exceptions.
  void handleDelQuietly() noexcept;

  const BgpParseExtCommControl parseControl_;
  // Set before handleInitialized() runs.
  bool hasBegun_ = false;
  // Set before handleDel() runs.
  bool hasEnded_ = false;
};

// Returns a new rule of class `Rule` with notification on, initialised and announced. Throws
// std::bad_alloc, and what observers of the registry throw.
template <class Rule>
Kiv::Ptr<Rule> bgpParseExtCommRuleIs(const BgpParseExtCommControl& control) {
  Kiv::Ptr<Rule> rule(new Rule(control));
  rule->hasNotificationActiveIs(true);
  rule->begin();
  return rule;
}

}  // namespace Routing::Bgp

#endif
