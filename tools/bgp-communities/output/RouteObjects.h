// The JSON output of routes: JSON Lines, with one object on one line for each route.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_OBJECTS_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_ROUTE_OBJECTS_H

#include <string>
#include <vector>

#include "OvBgp/List/PerList.h"
#include "tools/bgp-communities/output/Json.h"
#include "tools/bgp-communities/output/RouteOutput.h"
#include "tools/bgp-communities/output/TextOutput.h"

namespace CommTool {

// Every object has all of these members: "v", the version of the layout; "file"; "record" and
// "offset", the number of the record and where it starts; "time", the time of the record in UTC;
// "action"; "peer" with "ip" and "as"; "prefix"; "path_id", null without one; an array for each
// kind of community, with texts in the form of ListTexts.h; "raw", the values of the attributes in
// hexadecimal by type code; "errors", the problems of the record.
//
// "v" is increased when a member is removed or changes its meaning. A new member does not change
// it.
//
// "errors" is known only at the end of the record, so its routes are kept until then. The parts
// that the routes of a batch share are kept once, so the memory is a small multiple of the record's
// size.
class RouteObjects : public RouteOutput {
 public:
  // Prints to `out`, which must outlive this object.
  explicit RouteObjects(TextOutput& out) : out_(out) {}

  // Remembers the record that the next routes belong to.
  void recordBegins(const std::string& file, const MrtRecord& record) override;
  // Keeps the routes of a batch until recordEnds().
  void print(const RouteBatch& batch, const RouteCommunities& communities) override;
  // Prints the routes of the record.
  void recordEnds(const Problems& problems) override;

 private:
  // A batch: its destinations, and the JSON text before and behind each destination.
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
  Routing::Bgp::PerList<std::string> members_;  // JSON arrays by list
  const std::string* file_ = nullptr;
  const MrtRecord* record_ = nullptr;
  std::vector<Waiting> waiting_;  // only the first used_ are in use; the others keep their memory
  std::size_t used_ = 0;
};

}  // namespace CommTool

#endif
