// A table of routes that interns the communities of received paths, and releases them when paths
// are replaced or withdrawn.
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"

namespace {

using namespace Routing::Bgp;

// [tables]
// The tables of one process. Everything that routes share is in them.
struct CommunityTables {
  BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  ExtCommDedupTable::Ptr values = extCommDedupTableFactory(parser->extCommParser());
  ExtCommListDedupTable::Ptr extended = extCommListDedupTableFactory();
  CommListDedupTable::Ptr standard = commListDedupTableFactory();
};

// A path keeps one pointer for each kind of list; null means that the path has no such list.
struct Path {
  CommList::PtrConst communities;
  ExtCommList::PtrConst extended;
};
// [/tables]

using Octets = std::vector<U8>;

// [received]
// Makes the path of an UPDATE with these attribute values, in wire order. Throws
// Kiv::RangeException for a value whose length is no multiple of the size of a community.
Path received(const CommunityTables& tables, std::span<const U8> communities,
              std::span<const U8> extended) {
  Path path;
  if (!communities.empty()) {
    path.communities = CommList::dedupAttributeValue(tables.standard.ptr(), communities);
  }
  if (!extended.empty()) {
    path.extended =
        ExtCommList::dedupAttributeValue(tables.extended.ptr(), tables.values.ptr(), extended);
  }
  return path;
}
// [/received]

void show(const char* when, const CommunityTables& tables) {
  std::cout << when << ": " << tables.standard->size() << " standard lists, "
            << tables.values->size() << " extended values\n";
}

}  // namespace

int main() {
  const CommunityTables tables;
  const Octets blackhole{0xFF, 0xFF, 0x02, 0x9A};
  const Octets customer{0x7A, 0xC0, 0x04, 0xEC, 0x7A, 0xC0, 0x01, 0x00};
  const Octets target{0x00, 0x02, 0xFD, 0xE8, 0x00, 0x00, 0x00, 0x64};

  std::map<std::string, Path> routes;
  for (int i = 0; i < 1000; ++i) {
    routes["10.0." + std::to_string(i) + ".0/24"] = received(tables, customer, target);
  }
  show("a thousand routes", tables);
  const bool shared = tables.standard->size() == 1 && tables.values->size() == 1;

  std::cout << "one of them: " << routes.begin()->second.communities->toStrep() << ", "
            << routes.begin()->second.extended->toStrep() << "\n";

  // A route that is announced again releases its former lists.
  routes["10.0.0.0/24"] = received(tables, blackhole, {});
  show("one replaced", tables);
  const bool replaced = tables.standard->size() == 2;

  // The release of the last route of a list destroys the list.
  routes.clear();
  show("all withdrawn", tables);
  const bool gone = tables.standard->size() == 0 && tables.values->size() == 0;
  return shared && replaced && gone ? 0 : 1;
}
