// Umbrella: the framing of path attributes, RFC 4271 section 4.3.
//
// Use SerializePathAttribute if the length of the value is known, and
// SerializePathAttributeAutoExtLen if not. The enumerations of attribute types and flags are
// included.
#ifndef OVBGP_OVBGPSERIALIZE_H
#define OVBGP_OVBGPSERIALIZE_H

#include "OvBgp/Attribute/PathAttributeFraming.h"  // IWYU pragma: export

#endif
