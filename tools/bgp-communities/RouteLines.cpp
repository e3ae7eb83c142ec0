#include "tools/bgp-communities/RouteLines.h"

#include "OvFmt/DynamicBuffer.h"
#include "tools/bgp-communities/AddressText.h"

namespace CommTool {

namespace {

using namespace Routing::Bgp;

// Room for the lists of nearly all routes; longer ones make the buffer grow.
constexpr std::size_t usualTextSize = 1024;

std::string headOf(const RouteBatch& batch) {
  const AddressText peer(batch.peer.address);
  std::string head = std::to_string(batch.seconds);
  head.append({'|', static_cast<char>(batch.action), '|'}).append(peer.view());
  return head.append("|").append(std::to_string(batch.peer.as)).append("|");
}

template <class Value>
typename Value::StrepFormat withClassification() {
  typename Value::StrepFormat format;
  format.strepFormatClassificationIs(true);
  return format;
}

void appendText(OvFmt::DynamicBufferInterface& to, const CommList& list) { list.appendText(to); }
void appendText(OvFmt::DynamicBufferInterface& to, const LargeCommList& list) {
  list.appendText(to);
}
void appendText(OvFmt::DynamicBufferInterface& to, const ExtCommIp6List& list) {
  list.appendPolicyText(to, withClassification<ExtCommIp6>());
}
void appendText(OvFmt::DynamicBufferInterface& to, const ExtCommList& list) {
  const ExtComm::StrepFormat format = withClassification<ExtComm>();
  const char* separator = "";
  for (const ExtComm::PtrConst& member : list.commVector()) {
    to.append(separator);
    separator = " ";
    const std::size_t before = to.size();
    member->appendForPolicy(to, format);
    if (to.size() != before) continue;
    to.append("0x");
    to.appendHex(member->getContent().value(), 16);
  }
}

}  // namespace

void RouteLines::print(const RouteBatch& batch, const RouteCommunities& communities) {
  OvFmt::StackBackedBuffer<usualTextSize> text;
  std::size_t separators = 0;
  const auto separateUpTo = [&](std::size_t count) {
    for (; separators < count; ++separators) text.append('|');
  };
  communities.forEachList([&](CommunityKind kind, const auto& list) {
    separateUpTo(indexOf(kind));
    appendText(text, list);
  });
  separateUpTo(communityKinds - 1);
  const std::string head = headOf(batch);
  for (const Nlri& nlri : batch.routes) {
    out_.append(head);
    out_.append(AddressText(nlri.prefix).view());
    out_.append('|');
    out_.append(text.view());
    out_.append('\n');
  }
}

}  // namespace CommTool
