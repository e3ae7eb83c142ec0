// The plugin that makes the rule tree know colors.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMCOLORSM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMCOLORSM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommColor.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeTransOpaqueColorRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeTransOpaqueRuleBase,
                                     extCommPktSubtypeTransOpaqueColorExtendedCommunity,
                                     extCommColorFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeTransOpaqueColorRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommColorSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommColorSm)

 public:
  explicit BgpParseExtCommColorSm(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeTransOpaqueSubRule(
      const BgpParseExtCommSubTypeTransOpaqueRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommColorSm::Ptr BgpParseExtCommColorSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommColorSm::Ptr bgpParseExtCommColorSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
