// The kinds of extended communities that the rule tree tells apart: all that is
// particular to each of them, said once.
//
// A kind is what one type octet stands for. It is a traits struct; rules, keys,
// registry and plugins are templates over it, and short classes give the results
// their names. The elaborated names below declare those classes.
#ifndef OVBGP_PARSE_RULE_BGPPARSEEXTCOMMKINDS_H
#define OVBGP_PARSE_RULE_BGPPARSEEXTCOMMKINDS_H

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/Types.h"
#include "OvBgp/Value/ExtCommSubtypes.h"
#include "OvBgp/Value/PacketTypes.h"

namespace Routing::Bgp {

class ExtComm;
class ExtCommContent;
class ExtCommIp6;
class ExtCommIp6Content;

// What a type rule makes of a value that no leaf claims: the most that is known
// from the type alone, unclassified. Never null; not interned.
namespace BgpParseFallback {

OV_EXPORT Kiv::Ptr<ExtComm> twoOctetAs(const ExtCommContent& content);
OV_EXPORT Kiv::Ptr<ExtComm> fourOctetAs(const ExtCommContent& content);
OV_EXPORT Kiv::Ptr<ExtComm> ipv4Address(const ExtCommContent& content);
OV_EXPORT Kiv::Ptr<ExtComm> subtyped(const ExtCommContent& content);
OV_EXPORT Kiv::Ptr<ExtCommIp6> ip6Subtyped(const ExtCommIp6Content& content);

}  // namespace BgpParseFallback

// What kinds of one width of value have in common.
struct BgpParseValue8 {  // RFC 4360
  using Content = ExtCommContent;
  using Object = ExtComm;
  using Type = BgpExtCommPktType;
  using TypeRuleBase = class BgpParseExtendedCommunityTypeRuleBase;
  // Whether plugins are told of this kind's rule.
  static constexpr bool announced = true;
};
struct BgpParseValue20 {  // RFC 5701
  using Content = ExtCommIp6Content;
  using Object = ExtCommIp6;
  using Type = BgpExtCommIp6PktType;
  using TypeRuleBase = class BgpParseExtendedCommunityIp6TypeRuleBase;
  static constexpr bool announced = true;
};

// The root, which plugins may give type rules. `attribute`, here and below: the
// number under which the registry tells of this kind's nodes.
struct BgpParseKindRoot {
  using Rule = class BgpParseExtendedCommunityRule;
  using Key = class BgpParseExtendedCommunityRuleKey;
  static constexpr U32 attribute = 130;
};

struct BgpParseKindTransTwoOctetAs : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransTwoOctetAsRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransTwoOctetAsRuleBase;
  using Key = class BgpParseExtCommSubTypeTransTwoOctetAsRuleKey;
  static constexpr Type pktType = extCommPktTypeTransTwoOctetAs;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::twoOctetAs;
  static constexpr U32 attribute = 131;
};

struct BgpParseKindTransIpv4Address : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransIpv4AddressRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransIpv4AddressRuleBase;
  using Key = class BgpParseExtCommSubTypeTransIpv4AddressRuleKey;
  static constexpr Type pktType = extCommPktTypeTransIpv4Address;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::ipv4Address;
  static constexpr U32 attribute = 132;
};

struct BgpParseKindTransFourOctetAs : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransFourOctetAsRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransFourOctetAsRuleBase;
  using Key = class BgpParseExtCommSubTypeTransFourOctetAsRuleKey;
  static constexpr Type pktType = extCommPktTypeTransFourOctetAs;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::fourOctetAs;
  static constexpr U32 attribute = 133;
};

struct BgpParseKindTransOpaque : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransOpaqueRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransOpaqueRuleBase;
  using Key = class BgpParseExtCommSubTypeTransOpaqueRuleKey;
  static constexpr Type pktType = extCommPktTypeTransOpaque;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::subtyped;
  static constexpr U32 attribute = 134;
};

struct BgpParseKindTransGeneric : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransGenericRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransGenericRuleBase;
  using Key = class BgpParseExtCommSubTypeTransGenericRuleKey;
  static constexpr Type pktType = extCommPktTypeTransGeneric;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::subtyped;
  static constexpr U32 attribute = 135;
};

struct BgpParseKindTransGenericPart2 : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransGenericPart2Rule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransGenericPart2RuleBase;
  using Key = class BgpParseExtCommSubTypeTransGenericPart2RuleKey;
  static constexpr Type pktType = extCommPktTypeTransGenericPart2;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::subtyped;
  static constexpr U32 attribute = 136;
};

struct BgpParseKindTransGenericPart3 : BgpParseValue8 {
  using Rule = class BgpParseExtCommTransGenericPart3Rule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeTransGenericPart3RuleBase;
  using Key = class BgpParseExtCommSubTypeTransGenericPart3RuleKey;
  static constexpr Type pktType = extCommPktTypeTransGenericPart3;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::subtyped;
  static constexpr U32 attribute = 137;
};

struct BgpParseKindNonTransTwoOctetAs : BgpParseValue8 {
  using Rule = class BgpParseExtCommNonTransTwoOctetAsRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase;
  using Key = class BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey;
  static constexpr Type pktType = extCommPktTypeNonTransTwoOctetAs;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::twoOctetAs;
  static constexpr U32 attribute = 138;
};

struct BgpParseKindNonTransIpv4Address : BgpParseValue8 {
  using Rule = class BgpParseExtCommNonTransIpv4AddressRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeNonTransIpv4AddressRuleBase;
  using Key = class BgpParseExtCommSubTypeNonTransIpv4AddressRuleKey;
  static constexpr Type pktType = extCommPktTypeNonTransIpv4Address;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::ipv4Address;
  static constexpr U32 attribute = 139;
};

struct BgpParseKindNonTransFourOctetAs : BgpParseValue8 {
  using Rule = class BgpParseExtCommNonTransFourOctetAsRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeNonTransFourOctetAsRuleBase;
  using Key = class BgpParseExtCommSubTypeNonTransFourOctetAsRuleKey;
  static constexpr Type pktType = extCommPktTypeNonTransFourOctetAs;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::fourOctetAs;
  static constexpr U32 attribute = 140;
};

struct BgpParseKindNonTransOpaque : BgpParseValue8 {
  using Rule = class BgpParseExtCommNonTransOpaqueRule;
  using SubtypeRuleBase = class BgpParseExtComSubTypeNonTransOpaqueRuleBase;
  using Key = class BgpParseExtCommSubTypeNonTransOpaqueRuleKey;
  static constexpr Type pktType = extCommPktTypeNonTransOpaque;
  using Subtype = ExtCommSubtypeEnum<pktType>;
  static constexpr auto* fallback = &BgpParseFallback::subtyped;
  static constexpr U32 attribute = 141;
};

struct BgpParseKindIp6Trans : BgpParseValue20 {
  using Rule = class BgpParseExtCommIp6TransRule;
  using SubtypeRuleBase = class BgpParseExtCommIp6SubTypeTransRuleBase;
  using Key = class BgpParseExtCommIp6SubTypeTransRuleKey;
  using Subtype = BgpExtCommIp6PktSubtypeTransIpv6Address;
  static constexpr Type pktType = extCommIp6PktTypeTransIpv6Address;
  static constexpr auto* fallback = &BgpParseFallback::ip6Subtyped;
  static constexpr U32 attribute = 142;
};

// Never announced, so its values always take the fallback: no subtype of it has a
// name.
struct BgpParseKindIp6NonTrans : BgpParseValue20 {
  using Rule = class BgpParseExtCommIp6NonTransRule;
  using SubtypeRuleBase = class BgpParseExtCommIp6SubTypeNonTransRuleBase;
  using Key = class BgpParseExtCommIp6SubTypeNonTransRuleKey;
  using Subtype = BgpExtCommIp6PktSubtypeNonTransIpv6Address;
  static constexpr Type pktType = extCommIp6PktTypeNonTransIpv6Address;
  static constexpr auto* fallback = &BgpParseFallback::ip6Subtyped;
  static constexpr U32 attribute = 143;
  static constexpr bool announced = false;
};

template <class... Kind>
struct BgpParseKindList {};

// In the order in which the root builds their rules.
using BgpParseTypeKinds =
    BgpParseKindList<BgpParseKindTransTwoOctetAs, BgpParseKindTransIpv4Address,
                     BgpParseKindTransFourOctetAs, BgpParseKindTransOpaque,
                     BgpParseKindTransGeneric, BgpParseKindTransGenericPart2,
                     BgpParseKindTransGenericPart3, BgpParseKindNonTransTwoOctetAs,
                     BgpParseKindNonTransIpv4Address, BgpParseKindNonTransFourOctetAs,
                     BgpParseKindNonTransOpaque, BgpParseKindIp6Trans, BgpParseKindIp6NonTrans>;
// The same behind the root: one collection of the registry each, in its order.
using BgpParseNodeKinds =
    BgpParseKindList<BgpParseKindRoot, BgpParseKindTransTwoOctetAs, BgpParseKindTransIpv4Address,
                     BgpParseKindTransFourOctetAs, BgpParseKindTransOpaque,
                     BgpParseKindTransGeneric, BgpParseKindTransGenericPart2,
                     BgpParseKindTransGenericPart3, BgpParseKindNonTransTwoOctetAs,
                     BgpParseKindNonTransIpv4Address, BgpParseKindNonTransFourOctetAs,
                     BgpParseKindNonTransOpaque, BgpParseKindIp6Trans, BgpParseKindIp6NonTrans>;

}  // namespace Routing::Bgp

#endif
