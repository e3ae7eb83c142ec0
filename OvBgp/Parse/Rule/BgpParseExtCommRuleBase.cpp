#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"

#include "Kiv/Assert.h"
#include "Kiv/ObserverFailure.h"

namespace Routing::Bgp {

BgpParseExtCommRuleBase::~BgpParseExtCommRuleBase() {
  KIV_ASSERT(!hasBegun_ || hasEnded_, "!hasBegun_ || hasEnded_", "OvBgp/Parse/ExtComm");
}

void BgpParseExtCommRuleBase::begin() {
  if (hasBegun_) return;
  hasBegun_ = true;
  handleInitialized();
}

// The object has no reference yet. Observers that take and release one during the announcement
// would destroy it inside its own constructor, so hold one until they have finished. After an
// exception the language destroys the object, whatever its count; a reference that an observer
// kept would dangle, hence the assertion.
void BgpParseExtCommRuleBase::constructed() {
  referenceAdd();
  try {
    begin();
  } catch (...) {
    handleDelQuietly();
    KIV_ASSERT(references() == 1, "references() == 1", "OvBgp/Parse/ExtComm");
    throw;
  }
  referenceSubtract();
}

// The caller only released a reference and could not handle an exception. Exceptions of observers
// do not arrive here; those of handleDel() itself, of a class of an application, may.
void BgpParseExtCommRuleBase::handleDelQuietly() noexcept {
  hasEnded_ = true;
  Kiv::notifyOfRemoval([this] { handleDel(); });
}

// Raises the count from zero to one for the duration of handleDel(). Only if it is zero again
// afterwards has no observer kept the rule.
void BgpParseExtCommRuleBase::zeroReferencesIs() noexcept {
  referenceAdd();
  handleDelQuietly();
  if ((referenceSubtract() & countMask) == 0) PtrInterface::zeroReferencesIs();
}

}  // namespace Routing::Bgp
