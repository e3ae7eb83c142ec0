// Umbrella header for origin validation states: value class and plugin.
//
//   ExtCommOriginValidationState
//   BgpParseExtCommOriginValidationStateSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommOriginValidationState.h.
#ifndef OVBGP_PARSE_EXTCOMMORIGINVALIDATIONSTATE_H
#define OVBGP_PARSE_EXTCOMMORIGINVALIDATIONSTATE_H

#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"     // IWYU pragma: export

#endif
