// Traits of the kinds of extended communities: one struct for each type octet with a type rule.
//
// Rules, keys, registry and plugins are templates over these structs, so a struct is the only
// place that states the type octet, the subtype enumeration, the fallback and the classes of a
// kind. The `class X` arguments below declare these classes; the other headers define them. Kinds
// have no objects; all members are compile-time constants and types.
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

// The fallbacks: what a type rule builds for a value that no leaf accepts. Each function returns
// a new object with notification on, not interned, of extCommClassificationUnSpecified. None
// returns null; each throws std::bad_alloc only. Any thread.
namespace BgpParseFallback {

// Returns an ExtCommAsNumber that reads a two-octet AS number.
OV_EXPORT Kiv::Ptr<ExtComm> twoOctetAs(const ExtCommContent& content);
// Returns an ExtCommAsNumber that reads a four-octet AS number.
OV_EXPORT Kiv::Ptr<ExtComm> fourOctetAs(const ExtCommContent& content);
// Returns an ExtCommIpv4Address.
OV_EXPORT Kiv::Ptr<ExtComm> ipv4Address(const ExtCommContent& content);
// Returns an ExtCommSubtyped, which interprets only type and subtype.
OV_EXPORT Kiv::Ptr<ExtComm> subtyped(const ExtCommContent& content);
// Returns an ExtCommIp6Subtyped, which interprets only type and subtype.
OV_EXPORT Kiv::Ptr<ExtCommIp6> ip6Subtyped(const ExtCommIp6Content& content);

}  // namespace BgpParseFallback

// Common traits of all kinds of 8-octet extended communities (RFC 4360).
struct BgpParseValue8 {
  // The octets before parsing.
  using Content = ExtCommContent;
  // The base class of the objects that parsing builds.
  using Object = ExtComm;
  // The enumeration of the type octet.
  using Type = BgpExtCommPktType;
  // The base of the type rules.
  using TypeRuleBase = class BgpParseExtendedCommunityTypeRuleBase;
  // Whether the type rule of a kind enters its key in the registry, so that plugins can serve it.
  static constexpr bool announced = true;
};

// Common traits of all kinds of 20-octet extended communities (RFC 5701).
struct BgpParseValue20 {
  // The octets before parsing.
  using Content = ExtCommIp6Content;
  // The base class of the objects that parsing builds.
  using Object = ExtCommIp6;
  // The enumeration of the type octet.
  using Type = BgpExtCommIp6PktType;
  // The base of the type rules.
  using TypeRuleBase = class BgpParseExtendedCommunityIp6TypeRuleBase;
  // Whether the type rule of a kind enters its key in the registry, so that plugins can serve it.
  static constexpr bool announced = true;
};

// The members of a kind. `Value` gives the traits of its width.
template <class Value, typename Value::Type type, class SubtypeEnum, auto* fallbackOf, U32 number,
          class RuleClass, class SubtypeRuleBaseClass, class KeyClass>
struct BgpParseKindOf : Value {
  // The type octet that selects this kind at the root.
  static constexpr typename Value::Type pktType = type;
  // The enumeration of the subtype octet, which selects a leaf.
  using Subtype = SubtypeEnum;
  // Builds the object if no leaf does; a function of BgpParseFallback.
  static constexpr auto* fallback = fallbackOf;
  // The number of this kind's collection in the registry, and the attribute of its notifications.
  static constexpr U32 attribute = number;
  // The type rule.
  using Rule = RuleClass;
  // The base of the leaves below the type rule.
  using SubtypeRuleBase = SubtypeRuleBaseClass;
  // The key with which the type rule announces itself.
  using Key = KeyClass;
};

// A kind of 8-octet values. The type octet implies the subtype enumeration.
template <BgpExtCommPktType type, auto* fallback, U32 attribute, class Rule, class SubtypeRuleBase,
          class Key>
using BgpParseKind8 = BgpParseKindOf<BgpParseValue8, type, ExtCommSubtypeEnum<type>, fallback,
                                     attribute, Rule, SubtypeRuleBase, Key>;

// A kind of 20-octet values. All kinds of this width have the same fallback.
template <BgpExtCommIp6PktType type, class Subtype, U32 attribute, class Rule,
          class SubtypeRuleBase, class Key>
using BgpParseKind20 =
    BgpParseKindOf<BgpParseValue20, type, Subtype, &BgpParseFallback::ip6Subtyped, attribute, Rule,
                   SubtypeRuleBase, Key>;

// The root as a node of the registry. The root has no type octet, subtype or fallback: plugins
// that serve this kind add type rules.
struct BgpParseKindRoot {
  // The root rule.
  using Rule = class BgpParseExtendedCommunityRule;
  // The key with which the root announces itself.
  using Key = class BgpParseExtendedCommunityRuleKey;
  // The number of the root's collection in the registry, the first of all.
  static constexpr U32 attribute = 130;
};

// Transitive two-octet AS specific, type 0x00 (RFC 4360 section 3.1).
struct BgpParseKindTransTwoOctetAs
    : BgpParseKind8<extCommPktTypeTransTwoOctetAs, &BgpParseFallback::twoOctetAs, 131,
                    class BgpParseExtCommTransTwoOctetAsRule,
                    class BgpParseExtComSubTypeTransTwoOctetAsRuleBase,
                    class BgpParseExtCommSubTypeTransTwoOctetAsRuleKey> {};

// Transitive IPv4 address specific, type 0x01 (RFC 4360 section 3.2).
struct BgpParseKindTransIpv4Address
    : BgpParseKind8<extCommPktTypeTransIpv4Address, &BgpParseFallback::ipv4Address, 132,
                    class BgpParseExtCommTransIpv4AddressRule,
                    class BgpParseExtComSubTypeTransIpv4AddressRuleBase,
                    class BgpParseExtCommSubTypeTransIpv4AddressRuleKey> {};

// Transitive four-octet AS specific, type 0x02 (RFC 5668).
struct BgpParseKindTransFourOctetAs
    : BgpParseKind8<extCommPktTypeTransFourOctetAs, &BgpParseFallback::fourOctetAs, 133,
                    class BgpParseExtCommTransFourOctetAsRule,
                    class BgpParseExtComSubTypeTransFourOctetAsRuleBase,
                    class BgpParseExtCommSubTypeTransFourOctetAsRuleKey> {};

// Transitive opaque, type 0x03 (RFC 4360 section 3.3).
struct BgpParseKindTransOpaque
    : BgpParseKind8<extCommPktTypeTransOpaque, &BgpParseFallback::subtyped, 134,
                    class BgpParseExtCommTransOpaqueRule,
                    class BgpParseExtComSubTypeTransOpaqueRuleBase,
                    class BgpParseExtCommSubTypeTransOpaqueRuleKey> {};

// Generic transitive experimental use, type 0x80 (RFC 7153).
struct BgpParseKindTransGeneric
    : BgpParseKind8<extCommPktTypeTransGeneric, &BgpParseFallback::subtyped, 135,
                    class BgpParseExtCommTransGenericRule,
                    class BgpParseExtComSubTypeTransGenericRuleBase,
                    class BgpParseExtCommSubTypeTransGenericRuleKey> {};

// Generic transitive experimental use part 2, type 0x81 (RFC 7674).
struct BgpParseKindTransGenericPart2
    : BgpParseKind8<extCommPktTypeTransGenericPart2, &BgpParseFallback::subtyped, 136,
                    class BgpParseExtCommTransGenericPart2Rule,
                    class BgpParseExtComSubTypeTransGenericPart2RuleBase,
                    class BgpParseExtCommSubTypeTransGenericPart2RuleKey> {};

// Generic transitive experimental use part 3, type 0x82 (RFC 7674).
struct BgpParseKindTransGenericPart3
    : BgpParseKind8<extCommPktTypeTransGenericPart3, &BgpParseFallback::subtyped, 137,
                    class BgpParseExtCommTransGenericPart3Rule,
                    class BgpParseExtComSubTypeTransGenericPart3RuleBase,
                    class BgpParseExtCommSubTypeTransGenericPart3RuleKey> {};

// Non-transitive two-octet AS specific, type 0x40 (RFC 4360 section 3.1).
struct BgpParseKindNonTransTwoOctetAs
    : BgpParseKind8<extCommPktTypeNonTransTwoOctetAs, &BgpParseFallback::twoOctetAs, 138,
                    class BgpParseExtCommNonTransTwoOctetAsRule,
                    class BgpParseExtComSubTypeNonTransTwoOctetAsRuleBase,
                    class BgpParseExtCommSubTypeNonTransTwoOctetAsRuleKey> {};

// Non-transitive IPv4 address specific, type 0x41 (RFC 4360 section 3.2).
struct BgpParseKindNonTransIpv4Address
    : BgpParseKind8<extCommPktTypeNonTransIpv4Address, &BgpParseFallback::ipv4Address, 139,
                    class BgpParseExtCommNonTransIpv4AddressRule,
                    class BgpParseExtComSubTypeNonTransIpv4AddressRuleBase,
                    class BgpParseExtCommSubTypeNonTransIpv4AddressRuleKey> {};

// Non-transitive four-octet AS specific, type 0x42 (RFC 5668).
struct BgpParseKindNonTransFourOctetAs
    : BgpParseKind8<extCommPktTypeNonTransFourOctetAs, &BgpParseFallback::fourOctetAs, 140,
                    class BgpParseExtCommNonTransFourOctetAsRule,
                    class BgpParseExtComSubTypeNonTransFourOctetAsRuleBase,
                    class BgpParseExtCommSubTypeNonTransFourOctetAsRuleKey> {};

// Non-transitive opaque, type 0x43 (RFC 4360 section 3.3).
struct BgpParseKindNonTransOpaque
    : BgpParseKind8<extCommPktTypeNonTransOpaque, &BgpParseFallback::subtyped, 141,
                    class BgpParseExtCommNonTransOpaqueRule,
                    class BgpParseExtComSubTypeNonTransOpaqueRuleBase,
                    class BgpParseExtCommSubTypeNonTransOpaqueRuleKey> {};

// Transitive IPv6 address specific, type 0x00 of 20-octet values (RFC 5701 section 2).
struct BgpParseKindIp6Trans
    : BgpParseKind20<extCommIp6PktTypeTransIpv6Address, BgpExtCommIp6PktSubtypeTransIpv6Address,
                     142, class BgpParseExtCommIp6TransRule,
                     class BgpParseExtCommIp6SubTypeTransRuleBase,
                     class BgpParseExtCommIp6SubTypeTransRuleKey> {};

// Non-transitive IPv6 address specific, type 0x40 of 20-octet values (RFC 5701 section 2).
struct BgpParseKindIp6NonTrans
    : BgpParseKind20<
          extCommIp6PktTypeNonTransIpv6Address, BgpExtCommIp6PktSubtypeNonTransIpv6Address, 143,
          class BgpParseExtCommIp6NonTransRule, class BgpParseExtCommIp6SubTypeNonTransRuleBase,
          class BgpParseExtCommIp6SubTypeNonTransRuleKey> {
  // No subtype of this kind has a name, so a leaf would never be reached. The type rule therefore
  // does not announce itself, and its values always take the fallback.
  static constexpr bool announced = false;
};

// A list of kinds as a type, for functions that run once for each kind.
template <class... Kind>
struct BgpParseKindList {};

// Puts the root's kind in front of a list.
template <class Kinds>
struct BgpParseKindsWithRoot;

// The only specialisation: takes the kinds out of the list.
template <class... Kind>
struct BgpParseKindsWithRoot<BgpParseKindList<Kind...>> {
  // The longer list.
  using List = BgpParseKindList<BgpParseKindRoot, Kind...>;
};

// All kinds with a type octet, in the order in which the root builds their type rules.
using BgpParseTypeKinds =
    BgpParseKindList<BgpParseKindTransTwoOctetAs, BgpParseKindTransIpv4Address,
                     BgpParseKindTransFourOctetAs, BgpParseKindTransOpaque,
                     BgpParseKindTransGeneric, BgpParseKindTransGenericPart2,
                     BgpParseKindTransGenericPart3, BgpParseKindNonTransTwoOctetAs,
                     BgpParseKindNonTransIpv4Address, BgpParseKindNonTransFourOctetAs,
                     BgpParseKindNonTransOpaque, BgpParseKindIp6Trans, BgpParseKindIp6NonTrans>;

// All kinds of nodes, in the order of the registry's collections: first the root, then the type
// rules.
using BgpParseNodeKinds = BgpParseKindsWithRoot<BgpParseTypeKinds>::List;

}  // namespace Routing::Bgp

#endif
