// The data that a summary is made of.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_DATA_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_SUMMARY_DATA_H

#include <chrono>

#include "tools/bgp-communities/bgp/Counts.h"
#include "tools/bgp-communities/input/ErrorCounts.h"
#include "tools/bgp-communities/rib/HeldRoutes.h"

namespace CommTool {

// Borrows everything for the call that prints the summary.
struct SummaryData {
  const InputCounts& input;
  const ErrorCounts& errors;
  const HeldRoutes& routes;
  // Null if the attributes were not verified, so that their flags were not counted.
  const FlagCounts* flags = nullptr;
  // How long the tool has run. Printed in the text only: JSON is the same for the same input.
  std::chrono::nanoseconds elapsed{0};
  // How many of the most used lists the summary names.
  std::size_t top = 5;
  // The kinds of community that have a column in the text. JSON always has all kinds.
  KindSet kinds = KindSet::all();
};

}  // namespace CommTool

#endif
