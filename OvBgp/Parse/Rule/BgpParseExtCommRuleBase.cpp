#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"

#include "Kiv/Assert.h"

namespace Routing::Bgp {

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

void BgpParseExtCommRuleBase::handleDelQuietly() noexcept {
  try {
    handleDel();
  } catch (...) {
    // The exception is an observer's. The key has left the registry before observers are
    // notified, so the rule's state is consistent. The caller only released a reference and
    // could not handle the exception.
  }
}

// Raises the count from zero to one for the duration of handleDel(). Only if it is zero again
// afterwards has no observer kept the rule.
void BgpParseExtCommRuleBase::zeroReferencesIs() noexcept {
  referenceAdd();
  handleDelQuietly();
  if ((referenceSubtract() & countMask) == 0) PtrInterface::zeroReferencesIs();
}

}  // namespace Routing::Bgp
