// Umbrella: the types and flags of path attributes, and other numbers in them, with their names.
#ifndef OVBGP_BGPPATHATTRIBUTEENUMS_H
#define OVBGP_BGPPATHATTRIBUTEENUMS_H

#include "OvBgp/Attribute/PathAttributeEnums.h"  // IWYU pragma: export

#endif
