// One line of text for each route.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_LINES_H

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/RouteOutput.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// Prints fields with | between them: seconds of the record; A (announced), W
// (withdrawn) or B (in a table); the peer's address and AS; the prefix; and the
// route's lists: standard, large, extended, IPv6 extended, each empty where there
// is none, and as ListTexts.h has them.
//
// What the routes of a batch share is put together once, and the text of a list is
// written once for all the routes that have it.
class RouteLines : public RouteOutput {
 public:
  explicit RouteLines(TextOutput& out) : out_(out) {}

  void print(const RouteBatch& batch, const RouteCommunities& communities) override;

 private:
  TextOutput& out_;
  Routing::Bgp::PerList<std::string> texts_;
};

}  // namespace CommTool

#endif
