#include "OvBgp/Parse/Rule/BgpParseExtCommRuleCollections.h"

#include "Dorn/NotifyingObject.h"

namespace Routing::Bgp {
namespace {

// Observers identify a collection by its number alone, so the numbers must be unique; hosts rely
// on their values, so new kinds are appended only.
template <class... Kind>
constexpr bool numbersFollowOneAnother(BgpParseKindList<Kind...>) {
  U32 next = BgpParseKindRoot::attribute;
  return ((Kind::attribute == next++) && ...);
}
static_assert(numbersFollowOneAnother(BgpParseNodeKinds{}),
              "a collection's number is its place in the registry");

}  // namespace

KIV_OBJECT_DEFINE(BgpParseExtCommRuleCollections)

BgpParseExtCommRuleCollections::Ptr bgpParseExtCommRuleCollectionsFactory() {
  return Dorn::notifyingObject<BgpParseExtCommRuleCollections>();
}

}  // namespace Routing::Bgp
