// Extended communities of eight octets: everything that a user of them needs but
// the parser (OvBgp/Parse/ExtComm.h) and the typed classes beside it.
#ifndef OVBGP_OVBGPCOMMUNITY_H
#define OVBGP_OVBGPCOMMUNITY_H

#include "OvBgp/ExtComm.h"                    // IWYU pragma: export
#include "OvBgp/ExtCommAsNumber.h"            // IWYU pragma: export
#include "OvBgp/ExtCommContent.h"             // IWYU pragma: export
#include "OvBgp/ExtCommDedupTable.h"          // IWYU pragma: export
#include "OvBgp/ExtCommIpv4Address.h"         // IWYU pragma: export
#include "OvBgp/ExtCommText.h"                // IWYU pragma: export
#include "OvBgp/OvBgpCommunityPacketTypes.h"  // IWYU pragma: export
#include "OvBgp/OvBgpForwardReference.h"      // IWYU pragma: export

#endif
