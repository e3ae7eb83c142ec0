// A list's text, as a route map sees it.
#ifndef TOOLS_BGP_COMMUNITIES_LIST_TEXTS_H
#define TOOLS_BGP_COMMUNITIES_LIST_TEXTS_H

#include <string>

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

// What one member adds to that text.
void appendMemberText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtComm& member);
void appendMemberText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommIp6& member);

// The text of any of the lists.
std::string listText(const auto& list) {
  OvFmt::StackBackedBuffer<1024> text;
  appendListText(text, list);
  return text.str();
}

}  // namespace CommTool

#endif
