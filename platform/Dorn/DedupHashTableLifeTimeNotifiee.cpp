#include "Dorn/DedupHashTableLifeTimeNotifiee.h"

#include "Dorn/DedupHashTable.h"

namespace Dorn {

// Runs twice if the observer is registered. The first call takes a reference, because the table
// owns one while it tells the observer to stop. When this reference is given up at the end, the
// observer is unregistered, and the second call destroys it. The table stops this observer only:
// another one may have been registered since.
void DedupHashTableLifeTimeNotifiee::zeroReferencesIs() noexcept {
  if (!table_) return PtrInterface::zeroReferencesIs();
  const Ptr self(this);
  table_->notifieeDel(*this);
}

}  // namespace Dorn
