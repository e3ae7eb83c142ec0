#include "tools/bgp-communities/output/RouteLines.h"

#include "OvFmt/DynamicBuffer.h"
#include "tools/bgp-communities/bgp/AddressText.h"
#include "tools/bgp-communities/output/ListTexts.h"

namespace CommTool {

namespace {

// Enough for the lists of nearly all routes. Longer texts are moved to the heap.
constexpr std::size_t usualTextSize = 1024;

// The fields before the prefix, with the separator behind them.
std::string headOf(const RouteBatch& batch) {
  const AddressText peer(batch.peer.address);
  std::string head = std::to_string(batch.seconds);
  head.append({'|', static_cast<char>(batch.action), '|'}).append(peer.view());
  return head.append("|").append(std::to_string(batch.peer.as)).append("|");
}

}  // namespace

// Absent lists are not visited, so before each list, and at the end, the missing separators are
// added.
void RouteLines::print(const RouteBatch& batch, const RouteCommunities& communities) {
  OvFmt::StackBackedBuffer<usualTextSize> text;
  std::size_t separators = 0;
  const auto separateUpTo = [&](std::size_t count) {
    for (; separators < count; ++separators) text.append('|');
  };
  communities.forEachList([&](CommunityKind kind, const auto& list) {
    separateUpTo(indexOf(kind));
    text.append(texts_.of(list, [](const auto& made) { return listText(made); }));
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
