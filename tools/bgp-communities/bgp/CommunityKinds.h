// The four kinds of community and what the tool must know about each.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_COMMUNITY_KINDS_H
#define TOOLS_BGP_COMMUNITIES_BGP_COMMUNITY_KINDS_H

#include <array>
#include <optional>

#include "tools/bgp-communities/input/Octets.h"

namespace CommTool {

// The kinds, in the order in which they are printed. Arrays by kind use the value as index.
enum class CommunityKind : U8 { standard, large, extended, ip6Extended };
// The number of kinds.
inline constexpr std::size_t communityKinds = 4;

// The index of a kind in arrays by kind.
constexpr std::size_t indexOf(CommunityKind kind) { return static_cast<std::size_t>(kind); }

// The facts about one kind. All texts are literals.
struct CommunityKindRow {
  CommunityKind kind;
  // The type code of the path attribute that carries communities of this kind.
  U8 attributeType;
  // The size of one community in that attribute, in octets.
  U8 memberSize;
  // The name of the attribute, as its RFC has it, for error messages.
  const char* attribute;
  // The name of the kind in texts for people.
  const char* name;
  // The name of the kind as a value of --kind.
  const char* option;
  // The name of the kind in JSON.
  const char* member;
};

// One row for each kind, indexed by the kind. The attributes are those of RFC 1997, RFC 8092,
// RFC 4360 and RFC 5701.
inline constexpr std::array<CommunityKindRow, communityKinds> communityKindRows{{
    {CommunityKind::standard, 8, 4, "COMMUNITIES", "standard", "standard", "standard"},
    {CommunityKind::large, 32, 12, "LARGE_COMMUNITY", "large", "large", "large"},
    {CommunityKind::extended, 16, 8, "EXTENDED COMMUNITIES", "extended", "extended", "extended"},
    {CommunityKind::ip6Extended, 25, 20, "IPv6 ADDRESS SPECIFIC EXTENDED COMMUNITY",
     "IPv6 extended", "ipv6", "ipv6_extended"},
}};

// The row of a kind.
constexpr const CommunityKindRow& rowOf(CommunityKind kind) {
  return communityKindRows[indexOf(kind)];
}

// A set of kinds.
class KindSet {
 public:
  // Adds a kind; it may be in the set already.
  constexpr void add(CommunityKind kind) { bits_ |= bitOf(kind); }
  // Whether the set contains a kind.
  constexpr bool has(CommunityKind kind) const { return (bits_ & bitOf(kind)) != 0; }
  // Whether the set contains no kind.
  constexpr bool empty() const { return bits_ == 0; }

  // The set of all kinds.
  static constexpr KindSet all() {
    KindSet kinds;
    for (const CommunityKindRow& row : communityKindRows) kinds.add(row.kind);
    return kinds;
  }

  // Whether two sets contain the same kinds.
  friend constexpr bool operator==(KindSet, KindSet) = default;

 private:
  static constexpr unsigned bitOf(CommunityKind kind) { return 1U << indexOf(kind); }

  unsigned bits_ = 0;
};

// The community attributes of a route: value and flags of each, or no value if the route does not
// have the attribute. Values are borrowed and exactly as received; their lengths were checked, so
// they are positive multiples of the member size.
class CommunityAttributes {
 public:
  // The value of one attribute, if the route has it.
  using Value = std::optional<Octets>;

  // The value of the attribute of a kind.
  Value& operator[](CommunityKind kind) { return values_[indexOf(kind)]; }
  // The value of the attribute of a kind.
  const Value& operator[](CommunityKind kind) const { return values_[indexOf(kind)]; }

  // The flags octet of the attribute of a kind; meaningless if there is no value.
  U8 flags(CommunityKind kind) const { return flags_[indexOf(kind)]; }
  // Sets the flags octet of the attribute of a kind.
  void flagsIs(CommunityKind kind, U8 flags) { flags_[indexOf(kind)] = flags; }

  // Whether the route has none of the attributes.
  bool empty() const {
    for (const Value& value : values_) {
      if (value) return false;
    }
    return true;
  }
  // Removes the attributes of the kinds that are not in `kinds`.
  void keepOnly(KindSet kinds) {
    for (const CommunityKindRow& row : communityKindRows) {
      if (!kinds.has(row.kind)) values_[indexOf(row.kind)].reset();
    }
  }

 private:
  std::array<Value, communityKinds> values_;
  std::array<U8, communityKinds> flags_{};
};

}  // namespace CommTool

#endif
