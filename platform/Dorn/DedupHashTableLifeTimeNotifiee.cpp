#include "Dorn/DedupHashTableLifeTimeNotifiee.h"

#include "Dorn/DedupHashTable.h"

namespace Dorn {

// The table tells an observer that goes to stop, while it is still whole: the
// reference taken here brings it back for that long and ends in this function
// again, unregistered.
void DedupHashTableLifeTimeNotifiee::zeroReferencesIs() noexcept {
  if (!table_) return PtrInterface::zeroReferencesIs();
  const Ptr self(this);
  table_->lifeTimeNotifieeDel();
}

}  // namespace Dorn
