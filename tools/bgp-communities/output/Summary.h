// The summary at the end of a run, as text for people.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_H

#include "tools/bgp-communities/output/SummaryData.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Prints what was read, the time span of the records, the routes and communities that are present
// at the end with a column for each kind, the memory that sharing saves, the run time of the tool,
// and the most used lists. Throws as TextOutput does.
void printSummary(const SummaryData& data, TextOutput& out);

}  // namespace CommTool

#endif
