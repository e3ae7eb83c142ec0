// The interning table of IPv6 address specific extended communities.
#ifndef OVBGP_EXTCOMMIP6DEDUPTABLE_H
#define OVBGP_EXTCOMMIP6DEDUPTABLE_H

#include "OvBgp/ValueTable/ExtCommIp6DedupTable.h"  // IWYU pragma: export

#endif
