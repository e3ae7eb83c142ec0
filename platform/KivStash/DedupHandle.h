// The base of interned types that may also be kept in a shared-memory store.
#ifndef KIVSTASH_DEDUPHANDLE_H
#define KIVSTASH_DEDUPHANDLE_H

#include "Dorn/DedupHandle.h"
#include "Kiv/Export.h"
#include "KivStash/PtrInterface.h"

namespace KivStash {

class OV_EXPORT DedupHandle : public Dorn::DedupHandle {
 protected:
  DedupHandle() noexcept = default;
};

}  // namespace KivStash

#endif
