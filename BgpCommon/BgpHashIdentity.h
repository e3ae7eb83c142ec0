// The identity of an interned object, as an input of the lists' byte hash.
#ifndef BGPCOMMON_BGPHASHIDENTITY_H
#define BGPCOMMON_BGPHASHIDENTITY_H

#include <cstdint>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Dorn/DedupHandle.h"
#include "Kiv/Assert.h"
#include "Kiv/Types.h"

namespace BgpCommon {

// Adds the low four octets of the object's address, on 32-bit and 64-bit builds
// alike.  Requires: interned once, as only then equal objects are the same object.
inline void addIdentity(BgpHashMixImpl& mix, const Dorn::DedupHandle* p) {
  KIV_ASSERT_IN(p->dedupState() != Dorn::dedupHandleStateNeverDeduped(),
                "__null == ( p ) || ( p )->dedupState() != Dorn::dedupHandleStateNeverDeduped()",
                "BgpCommon/BgpHashMixImpl", "_BgpHashMix");
  mix.addU32(static_cast<U32>(reinterpret_cast<std::uintptr_t>(p)));
}

}  // namespace BgpCommon

#endif
