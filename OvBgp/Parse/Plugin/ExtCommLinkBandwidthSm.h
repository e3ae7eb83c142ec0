// BgpParseExtCommLinkBandwidthSm: the plugin that adds the leaves for link bandwidths to the rule
// tree.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMLINKBANDWIDTHSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMLINKBANDWIDTHSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"

namespace Routing::Bgp {

// The leaf for type 0x40, subtype 0x04: a link bandwidth (draft-ietf-idr-link-bandwidth).
BGP_PARSE_LEAF_RULE(BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule,
                    BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase,
                    extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth, extCommLinkBandwidthFactory);

// Adds this leaf to each non-transitive two-octet AS type rule. The leaf builds
// ExtCommLinkBandwidth objects. Without the plugin, values of its subtype become unclassified
// ExtCommAsNumber objects. Each operation of the plugin traces its name at level 8 of the handle
// "BgpParse". Owner thread only.
class OV_EXPORT BgpParseExtCommLinkBandwidthSm final : public BgpParseExtCommPluginBaseSm {
  BGP_PARSE_PLUGIN_BODY(BgpParseExtCommLinkBandwidthSm)

  // Adds a new BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule to the node of `key`.
  BGP_PARSE_PLUGIN_SERVES(BgpParseKindNonTransTwoOctetAs,
                          instantiateExtCommSubTypeNonTransTwoOctetAsSubRule)
};

// Returns a new link bandwidth plugin with notification on that has served all announced nodes of
// `collections`, which may be null. Throws std::bad_alloc.
BGP_PARSE_PLUGIN_FACTORIES(BgpParseExtCommLinkBandwidthSm, BgpParseExtCommLinkBandwidthSmIs,
                           bgpParseExtCommLinkBandwidthSmFactory);

}  // namespace Routing::Bgp

#endif
