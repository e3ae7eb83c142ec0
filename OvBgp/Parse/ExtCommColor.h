// Umbrella header for colors: value class and plugin.
//
//   ExtCommColor
//   BgpParseExtCommColorSm
//
// Code that only uses values needs only OvBgp/Parse/Typed/ExtCommColor.h.
#ifndef OVBGP_PARSE_EXTCOMMCOLOR_H
#define OVBGP_PARSE_EXTCOMMCOLOR_H

#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommColor.h"     // IWYU pragma: export

#endif
