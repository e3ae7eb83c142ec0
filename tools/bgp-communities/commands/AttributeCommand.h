// `bgp-communities attribute`: explains path attributes given in hexadecimal.
// Options are parsed in main.cpp.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_ATTRIBUTE_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_ATTRIBUTE_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/commands/ExitStatus.h"

namespace CommTool {

// The arguments of the command.
struct AttributeOptions {
  // Together one path attribute or several (RFC 4271, section 4.3) with their headers, in
  // hexadecimal. Blanks, colons and 0x are allowed between octets.
  std::vector<std::string> octets;
  // Print JSON Lines with one object for each attribute.
  bool json = false;
};

// Prints type, flags, length and value of each attribute to the descriptor `out`. For community
// attributes it also prints the communities and all text forms of their list, and verifies that the
// list serializes to the same communities.
//
// If an attribute is malformed, it is reported on `errors` with its offset and nothing is printed.
// A repeated attribute is only reported; the first attribute counts, as in UPDATE messages. In both
// cases the status is `damaged`.
ExitStatus runAttribute(const AttributeOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
