// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMTUNNELENCAP_H
#define OVBGP_PARSE_EXTCOMMTUNNELENCAP_H

#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommTunnelEncap.h"     // IWYU pragma: export

#endif
