// The framing of a path attribute.
#ifndef OVBGP_OVBGPSERIALIZE_H
#define OVBGP_OVBGPSERIALIZE_H

#include "OvBgp/Attribute/PathAttributeFraming.h"  // IWYU pragma: export

#endif
