#include "tests/soak/Agent.h"

#include "OvBgp/Store/StashLists.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "tools/bgp-communities/rib/Verification.h"

namespace Soak {
namespace {

// The salt that changes the communities of an update. One update in four has a salt, which differs
// in each pass; 0 means none.
U16 saltOf(U32 pass, std::size_t update) {
  if ((pass + update) % 4 != 0) return 0;
  return static_cast<U16>(pass % 0xFFFF + 1);
}

bool matches(const auto& list, const Routing::RouteMap::PosixRegex& regex) {
  return list.matchCommunitiesRegex(&regex);
}
bool matches(const Routing::Bgp::ExtCommIp6List& list, const Routing::RouteMap::PosixRegex& regex) {
  return regex.execute(list.commsStringForm().c_str()) == 0;
}

template <class Snapshot>
void edit(Snapshot& snapshot) {
  if (!snapshot.comm().empty()) snapshot.commDel(snapshot.comm().begin());
  snapshot.commDelAll();
}

}  // namespace

void Agent::pass() {
  ++passes_;
  for (std::size_t i = 0; i < updates_.size(); ++i) take(updates_[i].batch(saltOf(passes_, i)));
}

void Agent::take(const CommTool::RouteBatch& batch) {
  const CommTool::RouteCommunities lists = held_.tables().intern(batch.communities);
  held_.add(batch, lists);
  CommTool::verify(batch.communities, lists, problems_);
  if (!problems_.empty()) noteFault(problems_.text());
  problems_.clear();
  if (++operations_ % 8 == 0) use(lists);
  if (leak_ != 0 && operations_ % leak_ == 0) leaked_.push_back(lists);
}

void Agent::use(const CommTool::RouteCommunities& lists) {
  lists.forEachList([this](CommTool::CommunityKind kind, const auto& list) {
    use(list, images_[CommTool::indexOf(kind)]);
  });
}

template <class List>
void Agent::use(const List& list, std::optional<KivStash::ImageId>& image) {
  static const Routing::RouteMap::PosixRegex some("(^| )[^ ]*[0-9]");
  matches(list, some);
  if (list.toStrep().empty() && !list.empty()) noteFault("a list without text");
  edit(*list.commSnapshot());
  if (operations_ % 64 == 0 && image) {
    writer_.remove(*image);
    image.reset();
  }
  if (image) {
    Routing::Bgp::stashReplace(writer_, *image, list);
  } else {
    image = Routing::Bgp::stashPut(writer_, list);
  }
  const auto rebuilt = List::destash(writer_.storedAddress(*image), manager_.ptr());
  if (held_.tables().intern(rebuilt) != &list) noteFault("a store gave another list back");
}

void Agent::withdraw() {
  for (Update& update : updates_) held_.drop(update.batch(0));
}

}  // namespace Soak
