// The interning tables of all kinds of values and lists, and the parser of extended communities:
// the objects that a routing agent creates when it starts.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_COMMUNITY_TABLES_H
#define TOOLS_BGP_COMMUNITIES_RIB_COMMUNITY_TABLES_H

#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "tools/bgp-communities/rib/RouteCommunities.h"

namespace CommTool {

// Owns the tables. Lists may outlive the tables, because a table detaches its members when it is
// destroyed. Owner thread only.
class CommunityTables {
 public:
  // Creates the parser with all its rules, and empty tables.
  CommunityTables();

  // Returns the interned lists of the received attributes. The lengths of the attributes must be
  // multiples of the member size, or Kiv::RangeException is thrown.
  RouteCommunities intern(const CommunityAttributes& attributes) const;

  // This function and the next three return the interned list that equals `list`, which was rebuilt
  // from a store. The writer of the store may be hostile, so a list that is marked sorted but is
  // not (see inOrder()) is sorted first. This function is for standard communities.
  Routing::Bgp::CommList::PtrConst intern(const Routing::Bgp::CommList::Ptr& list) const;
  // Interns a rebuilt list of large communities, see above.
  Routing::Bgp::LargeCommList::PtrConst intern(const Routing::Bgp::LargeCommList::Ptr& list) const;
  // Interns a rebuilt list of extended communities, see above.
  Routing::Bgp::ExtCommList::PtrConst intern(const Routing::Bgp::ExtCommList::Ptr& list) const;
  // Interns a rebuilt list of IPv6 extended communities, see above.
  Routing::Bgp::ExtCommIp6List::PtrConst intern(
      const Routing::Bgp::ExtCommIp6List::Ptr& list) const;

  // The number of lists of a kind that are in the table now.
  U32 lists(CommunityKind kind) const;
  // The memory in use by the tables and all objects interned in them, in bytes. Measured as the
  // growth of the allocator's total since the constructor, so other objects that the process
  // allocated meanwhile are included.
  U64 bytes() const;

 private:
  const Routing::Bgp::BgpParseExtCommContainerSm::Ptr parser_;
  const Routing::Bgp::ExtCommDedupTable::Ptr extComms_;
  const Routing::Bgp::ExtCommIp6DedupTable::Ptr extCommIp6s_;
  const Routing::Bgp::CommListDedupTable::Ptr commLists_;
  const Routing::Bgp::LargeCommListDedupTable::Ptr largeCommLists_;
  const Routing::Bgp::ExtCommListDedupTable::Ptr extCommLists_;
  const Routing::Bgp::ExtCommIp6ListDedupTable::Ptr extCommIp6Lists_;
  const U64 bytesAtFirst_;  // in use after the constructor
};

// Whether the list ascends strictly if it is marked sorted. A list that is not marked sorted is
// always in order. This function is for standard communities.
bool inOrder(const Routing::Bgp::CommList& list);
// Whether a list of large communities ascends strictly if it is marked sorted.
bool inOrder(const Routing::Bgp::LargeCommList& list);
// Always true: lists of extended communities are sorted when they are rebuilt.
bool inOrder(const Routing::Bgp::ExtCommList& list);
// Whether a list of IPv6 extended communities ascends strictly if it is marked sorted.
bool inOrder(const Routing::Bgp::ExtCommIp6List& list);

}  // namespace CommTool

#endif
