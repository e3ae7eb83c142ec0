// Hashes of interned objects by identity, an input of the lists' byte hash.
//
// A list of extended communities holds interned members. Equal members are the same object, so the
// list hashes addresses instead of contents: four octets a member, and no member is read.
#ifndef BGPCOMMON_BGPHASHIDENTITY_H
#define BGPCOMMON_BGPHASHIDENTITY_H

#include <cstdint>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Dorn/DedupHandle.h"
#include "Kiv/Assert.h"
#include "Kiv/Types.h"

namespace BgpCommon {

// Adds the low four octets of the address `p` to `mix`, least significant octet first, on 32-bit
// and 64-bit builds alike. The high half is left out: it is nearly the same for all objects.
//
// Requires: `p` is not null and was interned at least once; otherwise the process stops. Two equal
// objects that were never interned would have different addresses and so different hashes.
inline void addIdentity(BgpHashMixImpl& mix, const Dorn::DedupHandle* p) {
  KIV_ASSERT_IN(p->dedupState() != Dorn::dedupHandleStateNeverDeduped(),
                "__null == ( p ) || ( p )->dedupState() != Dorn::dedupHandleStateNeverDeduped()",
                "BgpCommon/BgpHashMixImpl", "_BgpHashMix");
  mix.addU32(static_cast<U32>(reinterpret_cast<std::uintptr_t>(p)));
}

}  // namespace BgpCommon

#endif
