// Properties of the whole process that the host sets for its BGP libraries.
#ifndef OVBGPGLOBALS_OVBGPGLOBALS_H
#define OVBGPGLOBALS_OVBGPGLOBALS_H

#include "Kiv/Export.h"

namespace OvBgpGlobals {

// Whether several threads of this process use the BGP data model; false until set. Any thread.
OV_EXPORT bool multiThreaded() noexcept;
// Sets the above. The host must set it before it creates the first table, because each table reads
// it once, at its creation, to decide whether it locks. Tables that threads share also need
// Kiv::VFPtrInterface::threadSafePointers, which the host sets separately. Any thread.
OV_EXPORT void multiThreadedIs(bool multiThreaded) noexcept;

}  // namespace OvBgpGlobals

#endif
