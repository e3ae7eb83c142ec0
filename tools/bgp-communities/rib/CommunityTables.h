// The interning tables of all kinds of community and list, and the parser that
// makes the extended ones: what an agent builds when it starts.
#ifndef TOOLS_BGP_COMMUNITIES_COMMUNITY_TABLES_H
#define TOOLS_BGP_COMMUNITIES_COMMUNITY_TABLES_H

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "tools/bgp-communities/RouteCommunities.h"

namespace CommTool {

class CommunityTables {
 public:
  CommunityTables();

  // The lists of received attributes. Their lengths are those of whole members.
  RouteCommunities intern(const CommunityAttributes& attributes) const;

  // The interned list of one that was rebuilt from a store of any origin. What says
  // to be in order without being so is put in order (inOrder tells).
  Routing::Bgp::CommList::PtrConst intern(const Routing::Bgp::CommList::Ptr& list) const;
  Routing::Bgp::LargeCommList::PtrConst intern(const Routing::Bgp::LargeCommList::Ptr& list) const;
  Routing::Bgp::ExtCommList::PtrConst intern(const Routing::Bgp::ExtCommList::Ptr& list) const;
  Routing::Bgp::ExtCommIp6List::PtrConst intern(
      const Routing::Bgp::ExtCommIp6List::Ptr& list) const;

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

// Whether the members are in order, each once, unless the list does not say so.
bool inOrder(const Routing::Bgp::CommList& list);
bool inOrder(const Routing::Bgp::LargeCommList& list);
bool inOrder(const Routing::Bgp::ExtCommList& list);
bool inOrder(const Routing::Bgp::ExtCommIp6List& list);

}  // namespace CommTool

#endif
