// Verifies that interned lists represent the attributes that they were made of.
#ifndef TOOLS_BGP_COMMUNITIES_RIB_VERIFICATION_H
#define TOOLS_BGP_COMMUNITIES_RIB_VERIFICATION_H

#include "tools/bgp-communities/input/Problems.h"
#include "tools/bgp-communities/rib/RouteCommunities.h"

namespace CommTool {

// Serializes each of `lists` and compares its communities with those of the received attribute.
// They are compared as sets, because lists are sorted and have no duplicates. Each difference is
// added to `problems`. Costs several allocations for each list.
void verify(const CommunityAttributes& received, const RouteCommunities& lists, Problems& problems);

}  // namespace CommTool

#endif
