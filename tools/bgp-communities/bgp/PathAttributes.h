// Decoding of path attributes (RFC 4271, section 4.3) as far as the tool needs them, with the error
// handling of RFC 7606.
#ifndef TOOLS_BGP_COMMUNITIES_BGP_PATH_ATTRIBUTES_H
#define TOOLS_BGP_COMMUNITIES_BGP_PATH_ATTRIBUTES_H

#include "tools/bgp-communities/bgp/Route.h"
#include "tools/bgp-communities/input/Problems.h"

namespace CommTool {

// Bits of the flags octet (RFC 4271, section 4.3).
enum AttributeFlag : U8 {
  // The attribute is not well-known: a speaker need not recognize it.
  optionalFlag = 0x80,
  // A speaker passes the attribute on even if it does not recognize it.
  transitiveFlag = 0x40,
  // Some speaker on the way did not recognize the attribute.
  partialFlag = 0x20,
  // The length has two octets.
  extendedLengthFlag = 0x10,
};

// One path attribute. The value is borrowed from the octets that were read.
struct PathAttribute {
  // AttributeFlag bits; the lower four bits have no meaning.
  U8 flags;
  // The attribute type code.
  U8 type;
  // The octets behind the header.
  Octets value;
};

// Reads one attribute: its header, and as many octets as the header says. Throws Malformed if the
// octets do not suffice.
PathAttribute readPathAttribute(OctetReader& reader);

// The row of the kind of community that attributes of this type carry, or null for other types.
const CommunityKindRow* communityKindOf(U8 attributeType);

// Why an attribute of the row's type must not be used (RFC 7606: wrong flags or length); empty if
// it may be used.
std::string defectOf(const PathAttribute& attribute, const CommunityKindRow& row);

// The attributes of one UPDATE message or table entry. All spans are borrowed from the octets read.
struct PathAttributes {
  // The community attributes that may be used.
  CommunityAttributes communities;
  // The value of MP_REACH_NLRI (RFC 4760), if there is one.
  std::optional<Octets> mpReach;
  // The value of MP_UNREACH_NLRI (RFC 4760), if there is one.
  std::optional<Octets> mpUnreach;
  // An attribute is damaged, but the destinations are intact: the announced routes are to be
  // handled as withdrawn (RFC 7606, section 2, "treat-as-withdraw").
  bool treatAsWithdraw = false;
  // MP_REACH_NLRI or MP_UNREACH_NLRI occurs more than once, so the destinations are ambiguous and
  // the message must not be used at all (RFC 7606, section 3 g).
  bool repeatedMp = false;
};

// Reads all attributes in `octets`. Never throws Malformed: errors are added to `problems` and
// handled as RFC 7606 requires.
// - An attribute that runs past the end, or a truncated header: the attributes before it are kept,
//   treat-as-withdraw (section 4).
// - A community attribute whose length is zero or not a multiple of the member size:
//   treat-as-withdraw (sections 7.8, 7.14, 7.15; RFC 8092, section 5).
// - A community attribute whose flags differ from its definition: treat-as-withdraw (section 3 c).
// - A repeated attribute: the first one counts (section 3 g).
// The values of all other attributes are skipped without a check.
PathAttributes readPathAttributes(Octets octets, Problems& problems);

}  // namespace CommTool

#endif
