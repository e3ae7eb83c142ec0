#include "OvBgp/Parse/Rule/BgpParseExtCommTypeRules.h"

#include "OvBgp/Value/ExtCommAsNumber.h"
#include "OvBgp/Value/ExtCommIpv4Address.h"

namespace Routing::Bgp {

// The type records under which tools and tests count the rules.
KIV_OBJECT_DEFINE(BgpParseExtCommTransTwoOctetAsRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransIpv4AddressRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransFourOctetAsRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransOpaqueRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransGenericRule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransGenericPart2Rule)
KIV_OBJECT_DEFINE(BgpParseExtCommTransGenericPart3Rule)
KIV_OBJECT_DEFINE(BgpParseExtCommNonTransTwoOctetAsRule)
KIV_OBJECT_DEFINE(BgpParseExtCommNonTransIpv4AddressRule)
KIV_OBJECT_DEFINE(BgpParseExtCommNonTransFourOctetAsRule)
KIV_OBJECT_DEFINE(BgpParseExtCommNonTransOpaqueRule)
KIV_OBJECT_DEFINE(BgpParseExtCommIp6TransRule)
KIV_OBJECT_DEFINE(BgpParseExtCommIp6NonTransRule)

// The objects are unclassified: the classification says what a community means, and that depends on
// the subtype, which no leaf has recognised.
namespace BgpParseFallback {

ExtComm::Ptr twoOctetAs(const ExtCommContent& content) {
  return ExtCommAsNumberIs(extCommClassificationUnSpecified, content, false);
}

ExtComm::Ptr fourOctetAs(const ExtCommContent& content) {
  return ExtCommAsNumberIs(extCommClassificationUnSpecified, content, true);
}

ExtComm::Ptr ipv4Address(const ExtCommContent& content) {
  return ExtCommIpv4AddressIs(extCommClassificationUnSpecified, content);
}

// Opaque and generic types define no structure for the six value octets.
ExtComm::Ptr subtyped(const ExtCommContent& content) {
  return ExtCommSubtypedIs(extCommClassificationUnSpecified, content);
}

ExtCommIp6::Ptr ip6Subtyped(const ExtCommIp6Content& content) {
  return ExtCommIp6SubtypedIs(extCommClassificationUnSpecified, content);
}

}  // namespace BgpParseFallback

}  // namespace Routing::Bgp
