#include "OvBgp/ValueTable/ExtCommIp6DedupTable.h"

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/Parse/Rule/BgpParseExtendedCommunityRule.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6DedupTable)

ExtCommIp6DedupTable::ExtCommIp6DedupTable(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule)
    : ExtCommDedupTableBase(rule) {
  dedupTable()->keyProbeIs([](const Dorn::DedupContentHandle& key) {
    return static_cast<const ExtCommIp6Content&>(key).probeHash();
  });
}

ExtCommIp6DedupTable::Ptr extCommIp6DedupTableFactory(
    const Kiv::Ptr<const BgpParseExtendedCommunityRule>& rule) {
  return Dorn::notifyingObject<ExtCommIp6DedupTable>(rule);
}

// Defined here and not with the value, because it needs both the table and the rule tree, and the
// rule tree's headers include the value's. It has no inlined fast path as ExtComm::dedupContent
// has, since these communities are rare.
ExtCommIp6::PtrConst ExtCommIp6::dedupContent(const ExtCommIp6DedupTable* table,
                                              const ExtCommIp6Content& content) {
  ExtCommIp6DedupTable::Miss miss;
  const auto isWanted = ExtCommIp6DedupTable::describedBy<ExtCommIp6>(content);
  if (auto found =
          table->dedupTable()->lookup<const ExtCommIp6>(content.probeHash(), isWanted, miss))
    return found;
  PtrConst result = table->dedupNew<ExtCommIp6>(
      content, miss,
      [](const BgpParseExtendedCommunityRule& rule, const ExtCommIp6Content& wanted) {
        return rule.parseExtendedCommunityIp6(wanted);
      });
  KIV_ASSERT(result, "dedupHandle", "OvBgp/ExtCommIp6");
  return result;
}

}  // namespace Routing::Bgp
