// Two integer types that attributes are made of.
#ifndef OVBGP_OVBGPMISCTYPES_H
#define OVBGP_OVBGPMISCTYPES_H

#include "OvBgp/Attribute/BgpDenseU32Attr.h"  // IWYU pragma: export
#include "OvBgp/Attribute/BgpMaybeU63.h"      // IWYU pragma: export

#endif
