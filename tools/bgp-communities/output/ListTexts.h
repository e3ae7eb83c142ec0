// The text of a list as route maps match it.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_LIST_TEXTS_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_LIST_TEXTS_H

#include <string>

#include "OvBgp/OvBgpCommunityList.h"
#include "OvFmt/DynamicBuffer.h"

namespace CommTool {

// Appends the standard communities of a list with a blank between. Well-known communities are
// written by name.
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::CommList& list);
// Appends the large communities of a list as a:b:c, with a blank between.
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::LargeCommList& list);
// Appends the extended communities of a list with their classifications ("RT:65000:100"). A
// community for which policies have no text is written as 0x and 16 hexadecimal digits.
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommList& list);
// Appends the IPv6 extended communities of a list with their classifications.
void appendListText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommIp6List& list);

// Appends one extended community in that form.
void appendMemberText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtComm& member);
// Appends one IPv6 extended community in that form.
void appendMemberText(OvFmt::DynamicBufferInterface& to, const Routing::Bgp::ExtCommIp6& member);

// Returns the text of a list of any kind.
std::string listText(const auto& list) {
  OvFmt::StackBackedBuffer<1024> text;
  appendListText(text, list);
  return text.str();
}

}  // namespace CommTool

#endif
