#include "tools/bgp-communities/store/StoredLists.h"

#include "OvBgp/Store/StashLists.h"

namespace CommTool {

// Withdrawals have no communities, so they add nothing.
void StoredLists::handleRoutes(const RouteBatch& batch) {
  const RouteCommunities communities = tables_.intern(batch.communities);
  communities.forEachList([this](CommunityKind, const auto& list) { take(list); });
}

// Lists are interned, so a list is new if its address is.
template <class List>
void StoredLists::take(const List& list) {
  auto& kept = std::get<Kept<List>>(kept_);
  if (kept.seen.insert(&list).second) kept.lists.emplace_back(&list);
}

void StoredLists::put(KivStash::StoreWriter& writer) {
  std::apply([&](auto&... kept) { (put(writer, kept), ...); }, kept_);
}

// The images get the indexes of their lists.
template <class List>
void StoredLists::put(KivStash::StoreWriter& writer, Kept<List>& kept) {
  kept.images.reserve(kept.lists.size());
  for (const auto& list : kept.lists) {
    kept.images.push_back(Routing::Bgp::stashPut(writer, *list));
  }
}

U64 StoredLists::churn(KivStash::StoreWriter& writer) {
  return std::apply([&](auto&... kept) { return (U64{rewrite(writer, kept)} + ...); }, kept_);
}

// After each round over all images the shift grows by one, so that every image gets every list in
// turn. One image in eight is removed and put again, which makes readers meet freed blocks. The new
// image is put first: if the store is full, the old one is still there.
template <class List>
bool StoredLists::rewrite(KivStash::StoreWriter& writer, Kept<List>& kept) {
  const std::size_t count = kept.images.size();
  if (count == 0) return false;
  KivStash::ImageId& image = kept.images[kept.next];
  const List& list = *kept.lists[(kept.next + kept.shift) % count];
  if ((kept.next + kept.shift) % 8 == 0) {
    const KivStash::ImageId another = Routing::Bgp::stashPut(writer, list);
    writer.remove(image);
    image = another;
  } else {
    Routing::Bgp::stashReplace(writer, image, list);
  }
  if (++kept.next == count) {
    kept.next = 0;
    kept.shift = (kept.shift + 1) % count;
  }
  return true;
}

// A tuple has no index at run time, hence the array.
std::size_t StoredLists::lists(CommunityKind kind) const {
  const std::size_t counts[communityKinds] = {
      std::get<0>(kept_).lists.size(), std::get<1>(kept_).lists.size(),
      std::get<2>(kept_).lists.size(), std::get<3>(kept_).lists.size()};
  return counts[indexOf(kind)];
}

}  // namespace CommTool
