// The interning tables of all kinds of community and list, and the parser that
// makes the extended ones: what an agent builds when it starts.
#ifndef TOOLS_BGP_COMMUNITIES_COMMUNITY_TABLES_H
#define TOOLS_BGP_COMMUNITIES_COMMUNITY_TABLES_H

#include "OvBgp/ExtCommDedupTable.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "tools/bgp-communities/RouteCommunities.h"

namespace CommTool {

class CommunityTables {
 public:
  CommunityTables();

  // The lists of received attributes. Their lengths are those of whole members.
  RouteCommunities intern(const CommunityAttributes& attributes) const;

  // Lists of a kind that are interned now.
  U32 lists(CommunityKind kind) const;
  // What the framework's allocator has given out since there are these tables, to
  // them and all that they intern.
  U64 bytes() const;

 private:
  const Routing::Bgp::BgpParseExtCommContainerSm::Ptr parser_;
  const Routing::Bgp::ExtCommDedupTable::Ptr extComms_;
  const Routing::Bgp::ExtCommIp6DedupTable::Ptr extCommIp6s_;
  const Routing::Bgp::CommListDedupTable::Ptr commLists_;
  const Routing::Bgp::LargeCommListDedupTable::Ptr largeCommLists_;
  const Routing::Bgp::ExtCommListDedupTable::Ptr extCommLists_;
  const Routing::Bgp::ExtCommIp6ListDedupTable::Ptr extCommIp6Lists_;
  const U64 bytesAtFirst_;  // of the parser and the empty tables
};

}  // namespace CommTool

#endif
