// Umbrella: the list of IPv6 address specific extended communities.
//
// To make interned lists, include OvBgp/ExtCommIp6ListDedupTable.h, too, or
// OvBgp/OvBgpCommunityList.h for the lists of all kinds.
#ifndef OVBGP_EXTCOMMIP6LIST_H
#define OVBGP_EXTCOMMIP6LIST_H

#include "OvBgp/List/ExtCommIp6List.h"  // IWYU pragma: export

#endif
