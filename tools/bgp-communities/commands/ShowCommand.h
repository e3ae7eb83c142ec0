// `bgp-communities show`: explains single communities and prints all their text forms.
// Options are parsed in main.cpp.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_SHOW_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_SHOW_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/commands/ExitStatus.h"

namespace CommTool {

// The arguments of the command.
struct ShowOptions {
  // The communities, each in one of the forms of communityForms.
  std::vector<std::string> values;
  // Print AS numbers above 65535 in asdot: as two 16-bit numbers with a period between.
  bool asdot = false;
  // Print link bandwidth as a weight.
  bool weighted = false;
  // Print JSON Lines with one object for each value.
  bool json = false;
};

// Prints a report of each value to the descriptor `out`. All values are parsed before the first
// report is printed. If a value is invalid, it is named on `errors`, nothing is printed, and the
// status is `wrongUsage`.
ExitStatus runShow(const ShowOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
