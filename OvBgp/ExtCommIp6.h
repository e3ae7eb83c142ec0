// The IPv6 address specific extended community.
#ifndef OVBGP_EXTCOMMIP6_H
#define OVBGP_EXTCOMMIP6_H

#include "OvBgp/Value/ExtCommIp6.h"  // IWYU pragma: export

#endif
