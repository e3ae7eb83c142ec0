// `bgp-communities mrt`: files of routing data in, lists and figures out.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_MRT_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/ExitStatus.h"

namespace CommTool {

struct MrtOptions {
  std::vector<std::string> files;  // "-" is standard input
  bool routes = false;             // a line a route, rather than the summary
};

// Text for people and programs goes to the descriptor `out`, a line for each
// damage to `errors`.  Returns, too, when the reader of `out` goes away.
ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
