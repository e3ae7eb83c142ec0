#include "tools/bgp-communities/output/ListTexts.h"

namespace CommTool {

using namespace Routing::Bgp;

namespace {

// The text form of policies, with the classification before each value.
template <class Value>
typename Value::StrepFormat withClassification() {
  typename Value::StrepFormat format;
  format.strepFormatClassificationIs(true);
  return format;
}

}  // namespace

// Policies have no text for some types. An empty text would make such a community invisible.
void appendMemberText(OvFmt::DynamicBufferInterface& to, const ExtComm& member) {
  const std::size_t before = to.size();
  member.appendPolicyText(to, withClassification<ExtComm>());
  if (to.size() != before) return;
  to.append("0x");
  to.appendHex(member.getContent().value(), 16);
}

void appendMemberText(OvFmt::DynamicBufferInterface& to, const ExtCommIp6& member) {
  member.appendPolicyText(to, withClassification<ExtCommIp6>());
}

// The list writes names of well-known communities by itself.
void appendListText(OvFmt::DynamicBufferInterface& to, const CommList& list) {
  list.appendText(to);
}

void appendListText(OvFmt::DynamicBufferInterface& to, const LargeCommList& list) {
  list.appendText(to);
}

// Every IPv6 extended community has a text for policies, so the list's own function suffices.
void appendListText(OvFmt::DynamicBufferInterface& to, const ExtCommIp6List& list) {
  list.appendPolicyText(to, withClassification<ExtCommIp6>());
}

// Not list.appendPolicyText(), which writes only a blank for a member without a text.
void appendListText(OvFmt::DynamicBufferInterface& to, const ExtCommList& list) {
  const char* separator = "";
  for (const ExtComm::PtrConst& member : list.commVector()) {
    to.append(separator);
    separator = " ";
    appendMemberText(to, *member);
  }
}

}  // namespace CommTool
