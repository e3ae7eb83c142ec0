// The interface of everything that prints routes.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_OUTPUT_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_OUTPUT_H

#include "tools/bgp-communities/bgp/Route.h"
#include "tools/bgp-communities/mrt/ReadObserver.h"
#include "tools/bgp-communities/rib/RouteCommunities.h"

namespace CommTool {

// Prints routes in one form. As an observer of the reading, an output knows the record that the
// routes belong to, and the errors of that record.
class RouteOutput : public ReadObserver {
 public:
  // Prints the routes of a batch with their interned lists. Called between recordBegins() and
  // recordEnds() of the batch's record. Everything in `batch` is borrowed for the call. Throws
  // as TextOutput does.
  virtual void print(const RouteBatch& batch, const RouteCommunities& communities) = 0;
};

}  // namespace CommTool

#endif
