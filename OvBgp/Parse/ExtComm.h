// Everything that turns the octets of an extended community into an object of the
// right class: container, rule tree, registry, plugins, typed communities, and the
// cache of show commands. Start with BgpParseExtCommContainerSm.h.
#ifndef OVBGP_PARSE_EXTCOMM_H
#define OVBGP_PARSE_EXTCOMM_H

#include "OvBgp/Parse/BgpParseExtCommContainerSm.h"
#include "OvBgp/Parse/BgpParseExtCommControl.h"
#include "OvBgp/Parse/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/BgpParseExtCommRuleBase.h"
#include "OvBgp/Parse/BgpParseExtCommRuleCollections.h"
#include "OvBgp/Parse/BgpParseExtCommRuleKeys.h"
#include "OvBgp/Parse/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/BgpParseExtCommTypeRules.h"
#include "OvBgp/Parse/BgpParseExtendedCommunityRule.h"
#include "OvBgp/Parse/ExtCommCache.h"
#include "OvBgp/Parse/ExtCommColorSm.h"
#include "OvBgp/Parse/ExtCommDefaultGatewaySm.h"
#include "OvBgp/Parse/ExtCommLinkBandwidthSm.h"
#include "OvBgp/Parse/ExtCommOriginValidationStateSm.h"
#include "OvBgp/Parse/ExtCommRouteOriginSm.h"
#include "OvBgp/Parse/ExtCommRouteTargetSm.h"
#include "OvBgp/Parse/ExtCommTunnelEncapSm.h"

#endif
