// The kinds of community and what the tool has to know of each.
#ifndef TOOLS_BGP_COMMUNITIES_COMMUNITY_KINDS_H
#define TOOLS_BGP_COMMUNITIES_COMMUNITY_KINDS_H

#include <array>
#include <optional>

#include "tools/bgp-communities/Octets.h"

namespace CommTool {

// In the order in which output has them.
enum class CommunityKind : U8 { standard, large, extended, ip6Extended };
inline constexpr std::size_t communityKinds = 4;

constexpr std::size_t indexOf(CommunityKind kind) { return static_cast<std::size_t>(kind); }

struct CommunityKindRow {
  CommunityKind kind;
  U8 attributeType;
  U8 memberSize;          // octets
  const char* attribute;  // its name
  const char* name;       // of the communities
  const char* option;     // what the command line calls the kind
  const char* member;     // of JSON objects: figures of the kind
};

// A row a kind, in the order of the kinds.
inline constexpr std::array<CommunityKindRow, communityKinds> communityKindRows{{
    {CommunityKind::standard, 8, 4, "COMMUNITIES", "standard", "standard", "standard"},
    {CommunityKind::large, 32, 12, "LARGE_COMMUNITY", "large", "large", "large"},
    {CommunityKind::extended, 16, 8, "EXTENDED COMMUNITIES", "extended", "extended", "extended"},
    {CommunityKind::ip6Extended, 25, 20, "IPv6 ADDRESS SPECIFIC EXTENDED COMMUNITY",
     "IPv6 extended", "ipv6", "ipv6_extended"},
}};

constexpr const CommunityKindRow& rowOf(CommunityKind kind) {
  return communityKindRows[indexOf(kind)];
}

// Some of the kinds, or all.
class KindSet {
 public:
  constexpr void add(CommunityKind kind) { bits_ |= bitOf(kind); }
  constexpr bool has(CommunityKind kind) const { return (bits_ & bitOf(kind)) != 0; }
  constexpr bool empty() const { return bits_ == 0; }

  static constexpr KindSet all() {
    KindSet kinds;
    for (const CommunityKindRow& row : communityKindRows) kinds.add(row.kind);
    return kinds;
  }

  friend constexpr bool operator==(KindSet, KindSet) = default;

 private:
  static constexpr unsigned bitOf(CommunityKind kind) { return 1U << indexOf(kind); }

  unsigned bits_ = 0;
};

// The value octets of the attributes that carry communities, as received but of
// sound length; no value where a route has no such attribute.  And the flags octets
// of those that there are.
class CommunityAttributes {
 public:
  using Value = std::optional<Octets>;

  Value& operator[](CommunityKind kind) { return values_[indexOf(kind)]; }
  const Value& operator[](CommunityKind kind) const { return values_[indexOf(kind)]; }

  U8 flags(CommunityKind kind) const { return flags_[indexOf(kind)]; }
  void flagsIs(CommunityKind kind, U8 flags) { flags_[indexOf(kind)] = flags; }

  bool empty() const {
    for (const Value& value : values_) {
      if (value) return false;
    }
    return true;
  }
  // Forgets the attributes of other kinds.
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
