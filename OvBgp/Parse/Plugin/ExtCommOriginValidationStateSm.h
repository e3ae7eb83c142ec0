// The plugin that makes the rule tree know origin validation states.
#ifndef OVBGP_PARSE_PLUGIN_EXTCOMMORIGINVALIDATIONSTATESM_H
#define OVBGP_PARSE_PLUGIN_EXTCOMMORIGINVALIDATIONSTATESM_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "OvBgp/Parse/Plugin/BgpParseExtCommPluginBaseSm.h"
#include "OvBgp/Parse/Rule/BgpParseExtCommSubtypeRules.h"
#include "OvBgp/Parse/Typed/ExtCommOriginValidationState.h"

namespace Routing::Bgp {

class OV_EXPORT BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule final
    : public BgpParseExtCommLeafRule<BgpParseExtComSubTypeNonTransOpaqueRuleBase,
                                     extCommPktSubtypeNonTransOriginValidationState,
                                     extCommOriginValidationStateFactory> {
  KIV_OBJECT(BgpParseExtComSubTypeNonTransOpaqueOriginValidationStateRule)

 public:
  using BgpParseExtCommLeafRule::BgpParseExtCommLeafRule;
};

class OV_EXPORT BgpParseExtCommOriginValidationStateSm final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(BgpParseExtCommOriginValidationStateSm)

 public:
  explicit BgpParseExtCommOriginValidationStateSm(
      const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections)
      : BgpParseExtCommPluginBaseSm(collections) {
    constructed();
  }

  void instantiateExtCommSubTypeNonTransOpaqueSubRule(
      const BgpParseExtCommSubTypeNonTransOpaqueRuleKey& key,
      const BgpParseExtCommControl& control) const override;
};

// Both: new, with notification switched on, and with a leaf at all nodes that exist.
OV_EXPORT BgpParseExtCommOriginValidationStateSm::Ptr BgpParseExtCommOriginValidationStateSmIs(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);
OV_EXPORT BgpParseExtCommOriginValidationStateSm::Ptr bgpParseExtCommOriginValidationStateSmFactory(
    const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections);

}  // namespace Routing::Bgp

#endif
