// `bgp-communities show`: what single communities are, in every form of text.
#ifndef TOOLS_BGP_COMMUNITIES_SHOW_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_SHOW_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/ExitStatus.h"

namespace CommTool {

struct ShowOptions {
  std::vector<std::string> values;  // as communityForms says
  bool asdot = false;               // four-octet AS numbers as two halves
  bool weighted = false;            // link bandwidth as a weight
  bool json = false;                // JSON Lines, an object a value
};

// All values are read before the first is shown; one that cannot be is named on
// `errors`, and nothing is shown.
ExitStatus runShow(const ShowOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
