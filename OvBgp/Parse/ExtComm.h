// Everything that turns the octets of an extended community into an object of the
// right class: container, rule tree, registry, plugins, typed communities, and the
// cache of show commands. Start with BgpParseExtCommContainerSm.h.
#ifndef OVBGP_PARSE_EXTCOMM_H
#define OVBGP_PARSE_EXTCOMM_H

#include "OvBgp/Parse/Container/BgpParseExtCommContainerSm.h"
#include "OvBgp/Parse/Container/ExtCommCache.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Plugin/ExtCommColorSm.h"
#include "OvBgp/Parse/Plugin/ExtCommDefaultGatewaySm.h"
#include "OvBgp/Parse/Plugin/ExtCommLinkBandwidthSm.h"
#include "OvBgp/Parse/Plugin/ExtCommOriginValidationStateSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteOriginSm.h"
#include "OvBgp/Parse/Plugin/ExtCommRouteTargetSm.h"
#include "OvBgp/Parse/Plugin/ExtCommTunnelEncapSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommControl.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommKinds.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleBase.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommRuleKeys.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommTypeRules.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

#endif
