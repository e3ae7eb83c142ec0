// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMORIGINVALIDATIONSTATE_H
#define OVBGP_PARSE_EXTCOMMORIGINVALIDATIONSTATE_H

#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"     // IWYU pragma: export

#endif
