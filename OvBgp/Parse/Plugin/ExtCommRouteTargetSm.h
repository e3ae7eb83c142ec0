// BgpParseExtCommRouteTargetSm: the plugin that adds the leaves for route targets to the rule tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMROUTETARGETSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMROUTETARGETSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommRouteTarget.h"

namespace Routing::Bgp {

// The leaf for type 0x00, subtype 0x02: a route target with a two-octet AS number (RFC 4360 section
// 4).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule,
                    BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                    extCommPktSubtypeTransTwoOctetAsRouteTarget, extCommRouteTargetAsFactory,
                    false);

// The leaf for type 0x01, subtype 0x02: a route target with an IPv4 address (RFC 4360 section 4).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule,
                    BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                    extCommPktSubtypeTransIpv4AddressRouteTarget,
                    extCommRouteTargetIpv4AddressFactory);

// The leaf for type 0x02, subtype 0x02: a route target with a four-octet AS number (RFC 5668).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule,
                    BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                    extCommPktSubtypeTransFourOctetAsRouteTarget, extCommRouteTargetAsFactory,
                    true);

// Adds one of these leaves to each type rule of its kind. The leaves build ExtCommRouteTargetAs and
// ExtCommRouteTargetIpv4Address objects. Without the plugin, values of their subtypes become
// unclassified ExtCommAsNumber and ExtCommIpv4Address objects. Each operation of the plugin traces
// its name at level 8 of the handle "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommRouteTargetSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommRouteTargetSm)

  // Adds a new BgpParseExtComSubTypeTransTwoOctetAsRouteTargetRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransTwoOctetAs,
                          instantiateExtCommSubTypeTransTwoOctetAsSubRule)
  // Adds a new BgpParseExtComSubTypeTransIpv4AddressRouteTargetRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransIpv4Address,
                          instantiateExtCommSubTypeTransIpv4AddressSubRule)
  // Adds a new BgpParseExtComSubTypeTransFourOctetAsRouteTargetRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransFourOctetAs,
                          instantiateExtCommSubTypeTransFourOctetAsSubRule)
};

// Returns a new route target plugin with notification on that has served all announced nodes of
// `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommRouteTargetSm, BgpParseExtCommRouteTargetSmIs,
                           bgpParseExtCommRouteTargetSmFactory);

}  // namespace Routing::Bgp

#endif
