// Umbrella: contents of extended communities, and the numbers in them with their names.
//
// Start with ExtCommContent (eight octets) or ExtCommIp6Content (twenty octets). The enumerations
// name types, subtypes, classifications and well-known standard communities. Nothing here is
// interned; the objects are in OvBgp/OvBgpCommunity.h and OvBgp/ExtCommIp6.h.
#ifndef OVBGP_OVBGPCOMMUNITYPACKETTYPES_H
#define OVBGP_OVBGPCOMMUNITYPACKETTYPES_H

#include "OvBgp/Value/ExtCommContent.h"     // IWYU pragma: export
#include "OvBgp/Value/ExtCommIp6Content.h"  // IWYU pragma: export
#include "OvBgp/Value/PacketTypes.h"        // IWYU pragma: export

#endif
