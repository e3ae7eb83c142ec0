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
};

// A row a kind, in the order of the kinds.
inline constexpr std::array<CommunityKindRow, communityKinds> communityKindRows{{
    {CommunityKind::standard, 8, 4, "COMMUNITIES", "standard"},
    {CommunityKind::large, 32, 12, "LARGE_COMMUNITY", "large"},
    {CommunityKind::extended, 16, 8, "EXTENDED COMMUNITIES", "extended"},
    {CommunityKind::ip6Extended, 25, 20, "IPv6 ADDRESS SPECIFIC EXTENDED COMMUNITY",
     "IPv6 extended"},
}};

constexpr const CommunityKindRow& rowOf(CommunityKind kind) {
  return communityKindRows[indexOf(kind)];
}

// The value octets of the attributes that carry communities, as received but of
// sound length; no value where a route has no such attribute.
class CommunityAttributes {
 public:
  using Value = std::optional<Octets>;

  Value& operator[](CommunityKind kind) { return values_[indexOf(kind)]; }
  const Value& operator[](CommunityKind kind) const { return values_[indexOf(kind)]; }

 private:
  std::array<Value, communityKinds> values_;
};

}  // namespace CommTool

#endif
