// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMLINKBANDWIDTH_H
#define OVBGP_PARSE_EXTCOMMLINKBANDWIDTH_H

#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"     // IWYU pragma: export

#endif
