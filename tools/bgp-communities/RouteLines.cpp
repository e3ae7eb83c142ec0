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

// A comma between values, as some texts have blanks. Each prints as policies know it, with the word
// for its class; one that they do not know, as people are shown it.
template <class Value>
void appendValues(OvFmt::DynamicBufferInterface& to, const std::vector<Value>& values) {
  using Format = typename Value::element_type::StrepFormat;
  Format policy;
  policy.strepFormatClassificationIs(true);
  Format ui = policy;
  ui.strepFormatUIIs(true);
  for (const Value& value : values) {
    if (&value != values.data()) to.append(',');
    const Kiv::String text = value->toStrepForPolicy(policy);
    to.append(text.empty() ? value->toStrepForPolicy(ui) : text);
  }
}

}  // namespace

void RouteLines::print(const RouteBatch& batch, const RouteCommunities& communities) {
  const std::string head = headOf(batch);
  OvFmt::StackBackedBuffer<usualTextSize> text;
  if (communities.standard) {
    communities.standard->appendText(text);
  }
  text.append('|');
  appendValues(text, communities.extended);
  text.append('|');
  appendValues(text, communities.ip6Extended);
  for (const Nlri& nlri : batch.routes) {
    out_.append(head);
    out_.append(AddressText(nlri.prefix).view());
    out_.append('|');
    out_.append(text.view());
    out_.append('\n');
  }
}

}  // namespace CommTool
