// `bgp-communities mrt`: reads MRT files and prints their routes or a summary.
// Options are parsed in main.cpp.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_MRT_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_MRT_COMMAND_H

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Routing/RouteMap/PosixRegex.h"
#include "tools/bgp-communities/commands/ExitStatus.h"
#include "tools/bgp-communities/rib/RouteFilter.h"

namespace CommTool {

// The arguments of the command.
struct MrtOptions {
  // The files, read in this order; "-" is standard input.
  std::vector<std::string> files;
  // Print a line for each route instead of the summary.
  bool routes = false;
  // Print JSON Lines: one object for each route.
  bool json = false;
  // Print the summary: after the routes with `routes`, as the only object with `json`.
  bool summary = false;
  // How many of the most used lists the summary names.
  std::size_t top = 5;
  // Re-encode each list and compare it with the received attribute; count the flags of attributes.
  bool verify = false;
  // Show a progress line on `errors`, which must be a terminal.
  bool progress = false;
  // Keep only routes that meet these criteria.
  RouteFilter filter = {};
  // Keep only routes with a list that matches this expression, as in a route map.
  std::optional<Routing::RouteMap::PosixRegex> match = {};

  // Whether routes are printed.
  bool printsRoutes() const { return routes || (json && !summary); }
  // Whether a summary is printed.
  bool printsSummary() const { return summary || !(routes || json); }
  // Whether any option excludes routes.
  bool selects() const { return match || filter.kinds || filter.within || filter.peerAs; }
};

// Reads the files and prints to the descriptor `out`. Damaged input is reported on `errors`, one
// line for each record, and does not end the run. Ends with the status `fine` when the reader of
// `out` has closed the pipe.
ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
