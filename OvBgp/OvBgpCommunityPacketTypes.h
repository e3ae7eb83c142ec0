// The contents of extended communities, and the numbers in them with their names.
#ifndef OVBGP_OVBGPCOMMUNITYPACKETTYPES_H
#define OVBGP_OVBGPCOMMUNITYPACKETTYPES_H

#include "OvBgp/Value/ExtCommContent.h"     // IWYU pragma: export
#include "OvBgp/Value/ExtCommIp6Content.h"  // IWYU pragma: export
#include "OvBgp/Value/PacketTypes.h"        // IWYU pragma: export

#endif
