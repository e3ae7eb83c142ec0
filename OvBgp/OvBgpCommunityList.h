// Community lists: everything that a user of them needs.
#ifndef OVBGP_OVBGPCOMMUNITYLIST_H
#define OVBGP_OVBGPCOMMUNITYLIST_H

#include "OvBgp/CommList.h"               // IWYU pragma: export
#include "OvBgp/CommListDedupTable.h"     // IWYU pragma: export
#include "OvBgp/OvBgpForwardReference.h"  // IWYU pragma: export

#endif
