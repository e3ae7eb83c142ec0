// BgpParseExtCommRouteOriginSm: the plugin that adds the leaves for route origins to the rule tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMROUTEORIGINSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMROUTEORIGINSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommRouteOrigin.h"

namespace Routing::Bgp {

// The leaf for type 0x00, subtype 0x03: a route origin with a two-octet AS number (RFC 4360 section
// 5).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule,
                    BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                    extCommPktSubtypeTransTwoOctetAsRouteOrigin, extCommRouteOriginAsFactory,
                    false);

// The leaf for type 0x01, subtype 0x03: a route origin with an IPv4 address (RFC 4360 section 5).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule,
                    BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                    extCommPktSubtypeTransIpv4AddressRouteOrigin,
                    extCommRouteOriginIpv4AddressFactory);

// The leaf for type 0x02, subtype 0x03: a route origin with a four-octet AS number (RFC 5668).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule,
                    BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                    extCommPktSubtypeTransFourOctetAsRouteOrigin, extCommRouteOriginAsFactory,
                    true);

// Adds one of these leaves to each type rule of its kind. The leaves build ExtCommRouteOriginAs and
// ExtCommRouteOriginIpv4Address objects. Without the plugin, values of their subtypes become
// unclassified ExtCommAsNumber and ExtCommIpv4Address objects. Each operation of the plugin traces
// its name at level 8 of the handle "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommRouteOriginSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommRouteOriginSm)

  // Adds a new BgpParseExtComSubTypeTransTwoOctetAsRouteOriginRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransTwoOctetAs,
                          instantiateExtCommSubTypeTransTwoOctetAsSubRule)
  // Adds a new BgpParseExtComSubTypeTransIpv4AddressRouteOriginRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransIpv4Address,
                          instantiateExtCommSubTypeTransIpv4AddressSubRule)
  // Adds a new BgpParseExtComSubTypeTransFourOctetAsRouteOriginRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindTransFourOctetAs,
                          instantiateExtCommSubTypeTransFourOctetAsSubRule)
};

// Returns a new route origin plugin with notification on that has served all announced nodes of
// `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommRouteOriginSm, BgpParseExtCommRouteOriginSmIs,
                           bgpParseExtCommRouteOriginSmFactory);

}  // namespace Routing::Bgp

#endif
