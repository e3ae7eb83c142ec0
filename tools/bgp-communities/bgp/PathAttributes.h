// A run of path attributes (RFC 4271, section 4.3), taken apart as far as the
// tool needs them.
#ifndef TOOLS_BGP_COMMUNITIES_PATH_ATTRIBUTES_H
#define TOOLS_BGP_COMMUNITIES_PATH_ATTRIBUTES_H

#include "tools/bgp-communities/Problems.h"
#include "tools/bgp-communities/Route.h"

namespace CommTool {

// Bits of the flags octet (RFC 4271, section 4.3).
enum AttributeFlag : U8 {
  optionalFlag = 0x80,
  transitiveFlag = 0x40,
  partialFlag = 0x20,
  extendedLengthFlag = 0x10,
};

// One attribute. The value is borrowed.
struct PathAttribute {
  U8 flags;
  U8 type;
  Octets value;
};

// Reads a header and as many octets as it announces; throws Malformed.
PathAttribute readPathAttribute(OctetReader& reader);

// The kind of community that an attribute type carries, if it is one that does.
const CommunityKindRow* communityKindOf(U8 attributeType);

// What keeps an attribute of the row's type from being used (RFC 7606), or empty.
std::string defectOf(const PathAttribute& attribute, const CommunityKindRow& row);

// Spans are borrowed from the octets given.
struct PathAttributes {
  CommunityAttributes communities;
  std::optional<Octets> mpReach;
  std::optional<Octets> mpUnreach;
  // The routes cannot be used, but which they are can still be told: they count
  // as withdrawn (RFC 7606, section 2, "treat-as-withdraw").
  bool treatAsWithdraw = false;
  // MP_REACH_NLRI or MP_UNREACH_NLRI more than once: which routes the message
  // meant is unknown (RFC 7606, section 3 g).
  bool repeatedMp = false;
};

// Never throws Malformed: adds what is wrong to `problems` and goes on with as
// much as RFC 7606 leaves.
// - An attribute that runs past the end, or octets too few for a header: what
//   came before is kept, treat-as-withdraw (section 4).
// - A community attribute whose length is zero or no multiple of its members'
//   size: treat-as-withdraw (sections 7.8, 7.14, 7.15; RFC 8092, section 5).
// - A community attribute whose flags are not those of its definition:
//   treat-as-withdraw (section 3 c).
// - A repeated attribute: the first counts (section 3 g).
// Attributes other than those above are not looked into.
PathAttributes readPathAttributes(Octets octets, Problems& problems);

}  // namespace CommTool

#endif
