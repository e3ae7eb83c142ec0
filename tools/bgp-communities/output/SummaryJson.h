// The summary at the end of a run, as JSON for programs.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_JSON_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_JSON_H

#include "tools/bgp-communities/output/SummaryData.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Prints one object on one line with these members: "v", the version of the layout; "records", how
// many were read; "first_record" and "last_record", the earliest and the latest time of a record in
// UTC, null without records; "routes", how many are present at the end; "errors", how many of each
// kind; an object for each kind of community with "values" and "lists"; "top", the most used lists;
// and "flags" if lists were verified. All kinds are present, also those that a filter excludes.
//
// "v" is increased when a member is removed or changes its meaning. A new member does not change
// it. Throws as TextOutput does.
void printSummaryJson(const SummaryData& data, TextOutput& out);

}  // namespace CommTool

#endif
