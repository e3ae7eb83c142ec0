#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"

#include "Kiv/Assert.h"

namespace Routing::Bgp {

void BgpParseExtCommRuleBase::begin() {
  if (hasBegun_) return;
  hasBegun_ = true;
  handleInitialized();
}

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
    // From an observer. The key has been taken back by then, and nobody is there to
    // hear of more: whoever released the rule has done nothing wrong.
  }
}

void BgpParseExtCommRuleBase::zeroReferencesIs() noexcept {
  referenceAdd();
  handleDelQuietly();
  if ((referenceSubtract() & countMask) == 0) PtrInterface::zeroReferencesIs();
}

}  // namespace Routing::Bgp
