// Umbrella: two integer types that hold attributes.
//
// BgpDenseU32Attr is a 32-bit word with views of its bits, octets and halves. BgpMaybeU63 is an
// optional number within bounds.
#ifndef OVBGP_OVBGPMISCTYPES_H
#define OVBGP_OVBGPMISCTYPES_H

#include "OvBgp/Attribute/BgpDenseU32Attr.h"  // IWYU pragma: export
#include "OvBgp/Attribute/BgpMaybeU63.h"      // IWYU pragma: export

#endif
