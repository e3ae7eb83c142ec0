// The figures at the end of a run, for a person to read.
#ifndef TOOLS_BGP_COMMUNITIES_SUMMARY_H
#define TOOLS_BGP_COMMUNITIES_SUMMARY_H

#include <chrono>

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Prints a line a figure: name, blanks, value; and those of the communities in a
// table with a column a kind.
void printSummary(const InputCounts& input, const HeldRoutes& routes,
                  std::chrono::nanoseconds elapsed, TextOutput& out);

}  // namespace CommTool

#endif
