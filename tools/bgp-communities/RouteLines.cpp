#include "tools/bgp-communities/RouteLines.h"

#include "OvFmt/DynamicBuffer.h"
#include "tools/bgp-communities/AddressText.h"

namespace CommTool {

namespace {

// Room for the lists of nearly all routes; longer ones make the buffer grow.
constexpr std::size_t usualTextSize = 1024;

std::string headOf(const RouteBatch& batch) {
  const AddressText peer(batch.peer.address);
  std::string head = std::to_string(batch.seconds);
  head.append({'|', static_cast<char>(batch.action), '|'}).append(peer.view());
  return head.append("|").append(std::to_string(batch.peer.as)).append("|");
}

}  // namespace

void RouteLines::print(const RouteBatch& batch, const RouteLists& lists) {
  const std::string head = headOf(batch);
  OvFmt::StackBackedBuffer<usualTextSize> text;
  if (lists.standard) {
    lists.standard->appendText(text);
  }
  for (const Nlri& nlri : batch.routes) {
    out_.append(head);
    out_.append(AddressText(nlri.prefix).view());
    out_.append('|');
    out_.append(text.view());
    out_.append('\n');
  }
}

}  // namespace CommTool
