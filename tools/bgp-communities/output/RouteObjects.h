// One JSON object, on a line of its own, for each route.
#ifndef TOOLS_BGP_COMMUNITIES_ROUTE_OBJECTS_H
#define TOOLS_BGP_COMMUNITIES_ROUTE_OBJECTS_H

#include <string>
#include <vector>

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/Json.h"
#include "tools/bgp-communities/RouteOutput.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// The members, always all of them: "v", the version of this layout; "file"; "record"
// and "offset", its number and where it starts; "time", its own, in UTC; "action";
// "peer" with "ip" and "as"; "prefix"; "path_id", null if there is none; an array a
// kind of community, with texts as ListTexts.h has them; "raw", the attributes' value
// octets by type number; "errors", what was wrong with the record.
//
// As a record's errors are known at its end only, its routes wait until then; what
// they share is kept once, so that they take no more than a few times the record.
class RouteObjects : public RouteOutput {
 public:
  explicit RouteObjects(TextOutput& out) : out_(out) {}

  void recordBegins(const std::string& file, const MrtRecord& record) override;
  void print(const RouteBatch& batch, const RouteCommunities& communities) override;
  void recordEnds(const Problems& problems) override;

 private:
  // What the routes of a batch have before and behind their destination.
  struct Waiting {
    std::string head;
    std::string tail;
    std::vector<Nlri> routes;
  };

  void writeHead(const RouteBatch& batch);
  void writeTail(const RouteBatch& batch, const RouteCommunities& communities);
  template <class List>
  void writeMembers(std::string_view name, const List* list);
  Waiting& nextWaiting();
  void printRoute(const Waiting& batch, const Nlri& nlri, std::string_view end);

  TextOutput& out_;
  Json json_;
  Json membersJson_;
  Routing::Bgp::PerList<std::string> members_;  // arrays, written
  const std::string* file_ = nullptr;
  const MrtRecord* record_ = nullptr;
  std::vector<Waiting> waiting_;  // kept to reuse the memory; the first `used_` count
  std::size_t used_ = 0;
};

// A time as JSON has it: 2016-08-11T16:00:04Z.
std::string timeText(U32 seconds);

}  // namespace CommTool

#endif
