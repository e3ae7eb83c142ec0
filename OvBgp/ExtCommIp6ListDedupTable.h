// Umbrella: the interning table of lists of IPv6 address specific extended communities.
//
// extCommIp6ListDedupTableFactory makes a table; the lists are in OvBgp/ExtCommIp6List.h.
#ifndef OVBGP_EXTCOMMIP6LISTDEDUPTABLE_H
#define OVBGP_EXTCOMMIP6LISTDEDUPTABLE_H

#include "OvBgp/List/ExtCommIp6ListDedupTable.h"  // IWYU pragma: export

#endif
