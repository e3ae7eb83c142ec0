// One line of text for each route.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H

#include "tools/bgp-communities/Route.h"
#include "tools/bgp-communities/RouteCommunities.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Prints fields with | between them: seconds of the record; A (announced), W
// (withdrawn) or B (in a table); the peer's address and AS; the prefix; and the
// route's lists: standard, large, extended, IPv6 extended, each empty where there
// is none. Lists are as policies see them, with a blank between members: names of
// well-known communities, classifications of extended ones. An extended community
// that policies have no text for prints as its 16 hexadecimal digits.
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
