// The figures at the end of a run, for a person to read.
#ifndef TOOLS_BGP_COMMUNITIES_SUMMARY_H
#define TOOLS_BGP_COMMUNITIES_SUMMARY_H

#include <chrono>

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/MrtCommand.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Prints a line a figure: name, blanks, value; those of the communities in a table
// with a column for each kind that was asked for; how long lists are, in a table like
// it; and the lists that most routes hold.
void printSummary(const InputCounts& input, const FlagCounts& flags, const HeldRoutes& routes,
                  std::chrono::nanoseconds elapsed, const MrtOptions& options, TextOutput& out);

}  // namespace CommTool

#endif
