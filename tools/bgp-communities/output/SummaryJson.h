// The figures at the end of a run, for a program to read.
#ifndef TOOLS_BGP_COMMUNITIES_SUMMARY_JSON_H
#define TOOLS_BGP_COMMUNITIES_SUMMARY_JSON_H

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/MrtCommand.h"
#include "tools/bgp-communities/MrtFiles.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// One object on one line: "v", the version of this layout; "records" that were read;
// "routes" that are held at the end; "errors", how many of each kind; an object a
// kind of community, "values" and "lists"; "top", the lists that most routes hold;
// and, where lists were verified, "flags".  All is there, whatever was asked for.
void printSummaryJson(const MrtFiles& files, const FlagCounts& flags, const HeldRoutes& routes,
                      const MrtOptions& options, TextOutput& out);

}  // namespace CommTool

#endif
