// Umbrella: the vector of interned communities that lists and sub-lists consist of.
//
// Only code that extends the library needs it. It has ExtCommVector and the functions that append,
// sort and look up members.
#ifndef OVBGP_OVBGPCOMMUNITYLISTIMPL_H
#define OVBGP_OVBGPCOMMUNITYLISTIMPL_H

#include "OvBgp/SubList/ExtCommVector.h"  // IWYU pragma: export

#endif
