// Extended communities of eight octets: everything that a user of them needs but
// the parser (OvBgp/Parse/ExtComm.h) and the typed classes beside it.
#ifndef OVBGP_OVBGPCOMMUNITY_H
#define OVBGP_OVBGPCOMMUNITY_H

#include "OvBgp/OvBgpForwardReference.h"         // IWYU pragma: export
#include "OvBgp/Value/ExtComm.h"                 // IWYU pragma: export
#include "OvBgp/Value/ExtCommAsNumber.h"         // IWYU pragma: export
#include "OvBgp/Value/ExtCommContent.h"          // IWYU pragma: export
#include "OvBgp/Value/ExtCommIpv4Address.h"      // IWYU pragma: export
#include "OvBgp/Value/ExtCommText.h"             // IWYU pragma: export
#include "OvBgp/Value/PacketTypes.h"             // IWYU pragma: export
#include "OvBgp/ValueTable/ExtCommDedupTable.h"  // IWYU pragma: export

#endif
