// Whether lists still say what their attributes said.
#ifndef TOOLS_BGP_COMMUNITIES_VERIFICATION_H
#define TOOLS_BGP_COMMUNITIES_VERIFICATION_H

#include "tools/bgp-communities/Problems.h"
#include "tools/bgp-communities/RouteCommunities.h"

namespace CommTool {

// Serializes each of `lists` and compares the members with those of the attribute
// that it was made of, as sets: a list has dropped the sender's order and repeats.
// A difference is added to `problems`.
void verify(const CommunityAttributes& received, const RouteCommunities& lists, Problems& problems);

}  // namespace CommTool

#endif
