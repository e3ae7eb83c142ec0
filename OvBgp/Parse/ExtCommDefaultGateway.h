// All there is of one kind of community: the class of its values, and the plugin that
// makes the rule tree know it.
#ifndef OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H
#define OVBGP_PARSE_EXTCOMMDEFAULTGATEWAY_H

#include "OvBgp/Parse/ExtCommDefaultGatewaySm.h"     // IWYU pragma: export
#include "OvBgp/Parse/ExtCommDefaultGatewayValue.h"  // IWYU pragma: export

#endif
