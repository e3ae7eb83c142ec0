// Path attribute types and flags with their names.
#ifndef OVBGP_BGPPATHATTRIBUTEENUMS_H
#define OVBGP_BGPPATHATTRIBUTEENUMS_H

#include "OvBgp/Attribute/PathAttributeEnums.h"  // IWYU pragma: export

#endif
