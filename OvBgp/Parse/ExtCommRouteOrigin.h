// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMROUTEORIGIN_H
#define OVBGP_PARSE_EXTCOMMROUTEORIGIN_H

#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"     // IWYU pragma: export

#endif
