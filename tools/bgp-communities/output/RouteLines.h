// The text output of routes, one line for each route.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_LINES_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_LINES_H

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/output/RouteOutput.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Prints one line for each route, with | between the fields: the time of the record in seconds
// since 1970 UTC; A (announced), W (withdrawn) or B (table entry); the peer's address and AS
// number; the prefix; and the lists: standard, large, extended and IPv6 extended, in the form of
// ListTexts.h. A list that the route does not have is an empty field.
//
// The fields that the routes of a batch share are formatted once for the batch. The text of a list
// is formatted once and cached, since most lists belong to many routes.
class RouteLines : public RouteOutput {
 public:
  // Prints to `out`, which must outlive this object.
  explicit RouteLines(TextOutput& out) : out_(out) {}

  // See RouteOutput.
  void print(const RouteBatch& batch, const RouteCommunities& communities) override;

 private:
  TextOutput& out_;
  Routing::Bgp::PerList<std::string> texts_;  // by list
};

}  // namespace CommTool

#endif
