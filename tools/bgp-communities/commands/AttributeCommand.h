// `bgp-communities attribute`: path attributes in hexadecimal, explained.
#ifndef TOOLS_BGP_COMMUNITIES_ATTRIBUTE_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_ATTRIBUTE_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/ExitStatus.h"

namespace CommTool {

struct AttributeOptions {
  // Together one attribute or a run of them (RFC 4271, section 4.3), headers and
  // all. Blanks, colons and 0x may stand between octets.
  std::vector<std::string> octets;
  bool json = false;  // JSON Lines, an object an attribute
};

// Prints each attribute's type, flags, length and value; of those that carry
// communities the members as well, in every form that their lists have, and
// compares what the list serializes to with the attribute.
//
// Malformed input is named on `errors`, with the octet where it starts; then nothing
// is printed.  Only of an attribute that is there twice the first counts, as in
// updates, and the other one is named.
ExitStatus runAttribute(const AttributeOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
