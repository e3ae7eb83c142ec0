// The sub-list of IPv6 address specific extended communities.
#ifndef OVBGP_EXTCOMMIP6CLASSIFICATIONLIST_H
#define OVBGP_EXTCOMMIP6CLASSIFICATIONLIST_H

#include "OvBgp/SubList/ExtCommIp6ClassificationList.h"  // IWYU pragma: export

#endif
