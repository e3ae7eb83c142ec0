// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMROUTETARGET_H
#define OVBGP_PARSE_EXTCOMMROUTETARGET_H

#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"     // IWYU pragma: export

#endif
