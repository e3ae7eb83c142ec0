// The base class of interned types that can also be kept in a shared-memory store.
//
// The name is that of Dorn/DedupHandle.h on purpose: an interned type derives from the DedupHandle
// of the highest layer that it uses.
#ifndef KIVSTASH_DEDUPHANDLE_H
#define KIVSTASH_DEDUPHANDLE_H

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "KivStash/PtrInterface.h"

namespace KivStash {

// Adds nothing to Dorn::DedupHandle; it marks the types whose objects a store can contain.
class OV_EXPORT DedupHandle : public Dorn::DedupHandle {
 protected:
  // Only derived classes are constructed; the object is not yet in a table.
  explicit DedupHandle(U8 ownOctet = 0, bool notable = false) noexcept
      : Dorn::DedupHandle(ownOctet, notable) {}
};

}  // namespace KivStash

#endif
