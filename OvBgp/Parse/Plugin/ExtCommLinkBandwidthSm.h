// The plugin that makes the rule tree know link bandwidths.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMLINKBANDWIDTHSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMLINKBANDWIDTHSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommLinkBandwidth.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase,
                                     extCommPktSubtypeNonTransTwoOctetAsLinkBandwidth,
                                     extCommLinkBandwidthFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeNonTransTwoOctetAsLinkBandwidthRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommLinkBandwidthSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommLinkBandwidthSm)

 public:
  explicit BgpParseExtCommLinkBandwidthSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeNonTransTwoOctetAsSubRule(
      const BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommLinkBandwidthSm::Ptr BgpParseExtCommLinkBandwidthSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommLinkBandwidthSm::Ptr bgpParseExtCommLinkBandwidthSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
