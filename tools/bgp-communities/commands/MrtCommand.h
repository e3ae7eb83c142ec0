// `bgp-communities mrt`: files of routing data in, lists and figures out.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_MRT_COMMAND_H

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Routing/RouteMap/PosixRegex.h"
#include "tools/bgp-communities/ExitStatus.h"
#include "tools/bgp-communities/RouteFilter.h"

namespace CommTool {

struct MrtOptions {
  std::vector<std::string> files;  // "-" is standard input
  bool routes = false;             // a line a route, rather than the summary
  bool json = false;               // JSON Lines: an object a route
  bool summary = false;            // the summary after the routes, or, with `json`, alone
  std::size_t top = 5;             // lists in most use that the summary names
  bool verify = false;             // compare each list's attribute with the received one
  bool progress = false;           // how far it has come, on `errors`, a terminal
  RouteFilter filter = {};
  // Keep only routes of which a list matches, as a route map would.
  std::optional<Routing::RouteMap::PosixRegex> match = {};

  bool printsRoutes() const { return routes || (json && !summary); }
  bool printsSummary() const { return summary || !(routes || json); }
  bool selects() const { return match || filter.kinds || filter.within || filter.peerAs; }
};

// Text for people and programs goes to the descriptor `out`, a line for each
// damage to `errors`.  Returns, too, when the reader of `out` goes away.
ExitStatus runMrt(const MrtOptions& options, int out, std::ostream& errors);

}  // namespace CommTool

#endif
