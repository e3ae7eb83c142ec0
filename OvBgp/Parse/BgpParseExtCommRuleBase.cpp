#include "OvBgp/Parse/BgpParseExtCommRuleBase.h"

namespace Routing::Bgp {

void BgpParseExtCommRuleBase::zeroReferencesIs() noexcept {
  referenceAdd();
  try {
    handleDel();
  } catch (...) {
    // From an observer. The key has been taken back by then, and nobody is there to
    // hear of more: whoever released the rule has done nothing wrong.
  }
  if ((referenceSubtract() & countMask) == 0) PtrInterface::zeroReferencesIs();
}

}  // namespace Routing::Bgp
