// One line of text for each route.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H

#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Prints fields with | between them: seconds of the record; A (announced), W
// (withdrawn) or B (in a table); the peer's address and AS; the prefix; and the
// route's standard communities with blanks between them, then its extended and its
// IPv6 extended ones with commas, each field empty where there are none.
//
// What the routes of a batch share is formatted once.
class RouteLines {
 public:
  explicit RouteLines(TextOutput& out) : out_(out) {}

  void print(const RouteBatch& batch, const RouteCommunities& communities);

 private:
  TextOutput& out_;
};

}  // namespace CommTool

#endif
