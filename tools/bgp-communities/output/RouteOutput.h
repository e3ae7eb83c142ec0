// Where routes are printed.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_OUTPUT_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_OUTPUT_H

#include <string>

#include "tools/bgp-communities/MrtReader.h"
#include "tools/bgp-communities/Problems.h"
#include "tools/bgp-communities/Route.h"
#include "tools/bgp-communities/RouteCommunities.h"

namespace CommTool {

// Batches come between the begin and the end of the record that they are from.
class RouteOutput {
 public:
  virtual ~RouteOutput() = default;

  // `file` and `record` live until recordEnds().
  virtual void recordBegins(const std::string& /*file*/, const MrtRecord& /*record*/) {}
  virtual void print(const RouteBatch& batch, const RouteCommunities& communities) = 0;
  // With all that was wrong with the record.
  virtual void recordEnds(const Problems& /*problems*/) {}
};

}  // namespace CommTool

#endif
