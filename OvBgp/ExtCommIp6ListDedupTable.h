// The interning table of lists of IPv6 address specific extended communities.
#ifndef OVBGP_EXTCOMMIP6LISTDEDUPTABLE_H
#define OVBGP_EXTCOMMIP6LISTDEDUPTABLE_H

#include "OvBgp/List/ExtCommIp6ListDedupTable.h"  // IWYU pragma: export

#endif
