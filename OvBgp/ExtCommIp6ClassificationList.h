// Umbrella: the sub-list of IPv6 address specific extended communities.
//
// Users get sub-lists from a list (OvBgp/ExtCommIp6List.h) and rarely make them.
#ifndef OVBGP_EXTCOMMIP6CLASSIFICATIONLIST_H
#define OVBGP_EXTCOMMIP6CLASSIFICATIONLIST_H

#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"  // IWYU pragma: export

#endif
