#include "tools/bgp-communities/output/RouteObjects.h"

#include <algorithm>
#include <array>

#include "tools/bgp-communities/bgp/AddressText.h"
#include "tools/bgp-communities/output/ListTexts.h"
#include "tools/bgp-communities/output/TimeText.h"

namespace CommTool {

using namespace Routing::Bgp;  // NOLINT(google-build-using-namespace): all of it is about them

namespace {

// Texts up to this size keep their memory for the next record.
constexpr std::size_t keptText = std::size_t{64} * 1024;

// The value of "action".
std::string_view actionText(RouteAction action) {
  switch (action) {
    case RouteAction::announce:
      return "announce";
    case RouteAction::withdraw:
      return "withdraw";
    case RouteAction::tableEntry:
      return "table";
  }
  return {};
}

// The next functions write one community as an element of its array.
void writeMember(Json& json, U32 community) {
  const std::string name = CommList::wellKnownName(community);
  json.text(name.empty() ? CommList::getStringValue(community) : name);
}
void writeMember(Json& json, const Acl::CommunityValue& community) {
  json.text(LargeCommList::getStringValue(community));
}

// An extended community is an object with its text and its octets, since not every one has a text.
void writeExtended(Json& json, const auto& community, Octets octets) {
  OvFmt::StackBackedBuffer<128> text;
  appendMemberText(text, community);
  json.objectBegin();
  json.add("text", text.view());
  json.key("hex");
  json.hex(octets);
  json.objectEnd();
}
void writeMember(Json& json, const ExtComm::PtrConst& community) {
  std::array<U8, 8> octets;
  for (std::size_t i = 0; i < octets.size(); ++i) {
    octets[i] = static_cast<U8>(community->getContent().value() >> (56 - 8 * i));
  }
  writeExtended(json, *community, octets);
}
void writeMember(Json& json, const ExtCommIp6::PtrConst& community) {
  const ExtCommIp6Content content = community->getContent();
  std::array<U8, 20> octets{content.type(), content.subtype()};
  std::ranges::copy(content.addr().octets(), octets.begin() + 2);
  octets[18] = static_cast<U8>(content.localAdmin() >> 8);
  octets[19] = static_cast<U8>(content.localAdmin());
  writeExtended(json, *community, octets);
}

// The members of a list of any kind, in order.
const auto& membersOf(const CommList& list) { return *list.commVectorRawPtr(); }
const auto& membersOf(const LargeCommList& list) { return *list.commVectorRawPtr(); }
const auto& membersOf(const ExtCommList& list) { return list.commVector(); }
const auto& membersOf(const ExtCommIp6List& list) { return list.commVector(); }

// Releases the memory that an unusually large batch has taken.
void reduce(std::string& text) {
  if (text.capacity() > keptText) text = std::string();
}

}  // namespace

// Routes of a record whose decoding threw an exception are discarded.
void RouteObjects::recordBegins(const std::string& file, const MrtRecord& record) {
  file_ = &file;
  record_ = &record;
  used_ = 0;
}

// Head and tail are written into one buffer, as the JSON writer keeps track of the commas. The text
// is then split where the destination belongs.
void RouteObjects::print(const RouteBatch& batch, const RouteCommunities& communities) {
  json_.clear();
  json_.objectBegin();
  writeHead(batch);
  const std::size_t headSize = json_.size();
  writeTail(batch, communities);
  Waiting& waiting = nextWaiting();
  waiting.head.assign(json_.view().substr(0, headSize));
  waiting.tail.assign(json_.view().substr(headSize));
  // `batch` is only borrowed, so its destinations are copied.
  waiting.routes.assign(batch.routes.begin(), batch.routes.end());
}

// Reuses an element of an earlier record, with the memory of its strings.
RouteObjects::Waiting& RouteObjects::nextWaiting() {
  if (used_ == waiting_.size()) waiting_.emplace_back();
  return waiting_[used_++];
}

// The members before the destination.
void RouteObjects::writeHead(const RouteBatch& batch) {
  json_.add("v", U64{1});
  json_.add("file", *file_);
  json_.add("record", record_->number);
  json_.add("offset", record_->offset);
  json_.add("time", timeText(batch.seconds));
  json_.add("action", actionText(batch.action));
  json_.key("peer");
  json_.objectBegin();
  json_.add("ip", AddressText(batch.peer.address).view());
  json_.add("as", U64{batch.peer.as});
  json_.objectEnd();
}

// The members behind the destination, up to "errors".
void RouteObjects::writeTail(const RouteBatch& batch, const RouteCommunities& communities) {
  writeMembers("communities", communities.standard.ptr());
  writeMembers("large_communities", communities.large.ptr());
  writeMembers("extended_communities", communities.extended.ptr());
  writeMembers("ipv6_extended_communities", communities.ip6Extended.ptr());
  json_.key("raw");
  json_.objectBegin();
  for (const CommunityKindRow& row : communityKindRows) {
    const auto& value = batch.communities[row.kind];
    if (!value) continue;
    json_.key(std::to_string(row.attributeType));
    json_.hex(*value);
  }
  json_.objectEnd();
}

// The array of a list is written once and cached as text for all routes that have the list.
template <class List>
void RouteObjects::writeMembers(std::string_view name, const List* list) {
  json_.key(name);
  // A route without the attribute has an empty array and not null, so readers can always iterate.
  if (list == nullptr) return json_.written("[]", rapidjson::kArrayType);
  json_.written(members_.of(*list,
                            [this](const List& made) {
                              membersJson_.clear();
                              membersJson_.arrayBegin();
                              for (const auto& member : membersOf(made)) {
                                writeMember(membersJson_, member);
                              }
                              membersJson_.arrayEnd();
                              return std::string(membersJson_.view());
                            }),
                rapidjson::kArrayType);
}

// The object of a batch is still open: "errors" and the closing brace complete each line.
void RouteObjects::recordEnds(const Problems& problems) {
  json_.clear();
  json_.arrayBegin();
  for (const std::string& problem : problems.first()) json_.text(problem);
  if (const std::size_t more = problems.count() - problems.first().size(); more > 0) {
    json_.text("and " + std::to_string(more) + " more");
  }
  json_.arrayEnd();
  const std::string end = std::string(",\"errors\":").append(json_.view()).append("}\n");
  for (std::size_t i = 0; i < used_; ++i) {
    for (const Nlri& nlri : waiting_[i].routes) printRoute(waiting_[i], nlri, end);
    reduce(waiting_[i].head);
    reduce(waiting_[i].tail);
  }
  used_ = 0;
}

// Inserts the destination between head and tail. Its text needs no escapes, so it is written
// without the JSON writer.
void RouteObjects::printRoute(const Waiting& batch, const Nlri& nlri, std::string_view end) {
  out_.append(batch.head);
  out_.append(R"(,"prefix":")");
  out_.append(AddressText(nlri.prefix).view());
  out_.append(R"(","path_id":)");
  if (nlri.pathId) {
    out_.append(U64{*nlri.pathId});
  } else {
    out_.append("null");
  }
  out_.append(batch.tail);
  out_.append(end);
}

}  // namespace CommTool
