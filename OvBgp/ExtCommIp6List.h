// The list of IPv6 address specific extended communities.
#ifndef OVBGP_EXTCOMMIP6LIST_H
#define OVBGP_EXTCOMMIP6LIST_H

#include "OvBgp/List/ExtCommIp6List.h"  // IWYU pragma: export

#endif
