// Facts about the whole agent that its BGP libraries ask for.
#ifndef OVBGPGLOBALS_OVBGPGLOBALS_H
#define OVBGPGLOBALS_OVBGPGLOBALS_H

#include "Kiv/Export.h"

namespace OvBgpGlobals {

// Whether several threads of this process use the BGP data model; false until set.
//
// The host sets it, and Kiv::VFPtrInterface::threadSafePointers separately, before
// it builds the first table: each table decides when it is made whether it locks,
// and does not change its mind.  Tables shared by threads need both.  Any thread.
OV_EXPORT bool multiThreaded() noexcept;
OV_EXPORT void multiThreadedIs(bool multiThreaded) noexcept;

}  // namespace OvBgpGlobals

#endif
