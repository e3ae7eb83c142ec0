// Umbrella: the IPv6 address specific extended community as an interned object.
//
// Start with ExtCommIp6 and its content, ExtCommIp6Content. Interning also needs the table,
// OvBgp/ExtCommIp6DedupTable.h.
#ifndef OVBGP_EXTCOMMIP6_H
#define OVBGP_EXTCOMMIP6_H

#include "OvBgp/Value/ExtCommIp6.h"  // IWYU pragma: export

#endif
