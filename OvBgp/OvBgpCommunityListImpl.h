// The vector of interned communities that lists and sub-lists are made of.
#ifndef OVBGP_OVBGPCOMMUNITYLISTIMPL_H
#define OVBGP_OVBGPCOMMUNITYLISTIMPL_H

#include "OvBgp/SubList/ExtCommVector.h"  // IWYU pragma: export

#endif
