// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H
#define OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H

#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"  // IWYU pragma: export
#include "OvBgp/Parse/Typed/ExtCommDefaultGateway.h"     // IWYU pragma: export

#endif
