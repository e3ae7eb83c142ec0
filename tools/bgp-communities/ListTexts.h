// A list's text, as a route map sees it.
#ifndef TOOLS_BGP_COMMUNITIES_LIST_TEXTS_H
#define TOOLS_BGP_COMMUNITIES_LIST_TEXTS_H

#include "OvBgp/OvBgpCommunityList.h"
#include "OvFmt/DynamicBuffer.h"

namespace CommTool {

// Append the members with a blank between: names of well-known communities,
// classifications of extended ones. An extended community that policies have no text
// for is its 16 hexadecimal digits.
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::CommList& list);
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::LargeCommList& list);
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommList& list);
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommIp6List& list);

}  // namespace CommTool

#endif
