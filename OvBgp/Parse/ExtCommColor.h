// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMCOLOR_H
#define OVBGP_PARSE_EXTCOMMCOLOR_H

#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommColor.h"     // IWYU pragma: export

#endif
