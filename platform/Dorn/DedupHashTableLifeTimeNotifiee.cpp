#include "Dorn/DedupHashTableLifeTimeNotifiee.h"

#include "Dorn/DedupHashTable.h"
#include "Dorn/DelayPoint.h"

namespace Dorn {

// Runs twice if the observer is registered. The first call takes a reference, because the table
// owns one while it tells the observer to stop. When this reference is given up at the end, the
// observer is unregistered, and the second call destroys it. The table stops this observer only:
// another one may have been registered since.
void DedupHashTableLifeTimeNotifiee::zeroReferencesIs() noexcept {
  DedupHashTable* const table = table_;
  if (!table) return PtrInterface::zeroReferencesIs();
  const Ptr self(this);
  delayAt(DelayPoint::unregister);
  table->notifieeDel(*this);
}

}  // namespace Dorn
