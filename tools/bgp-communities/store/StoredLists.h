// The lists of routing data and their images in a store.
#ifndef TOOLS_BGP_COMMUNITIES_STORED_LISTS_H
#define TOOLS_BGP_COMMUNITIES_STORED_LISTS_H

#include <tuple>
#include <unordered_set>
#include <vector>

#include "KivStash/StoreWriter.h"
#include "tools/bgp-communities/CommunityTables.h"
#include "tools/bgp-communities/Route.h"

namespace CommTool {

// Takes each list of the routes once, in the order of the data; then keeps images of
// them in a store and changes these. Withdrawals take nothing back.
class StoredLists : public RouteSink {
 public:
  void handleRoutes(const RouteBatch& batch) override;

  // Puts all lists. What KivStash::StoreWriter raises, these do, with as many images
  // in the store as there was room for.
  void put(KivStash::StoreWriter& writer);
  // Rewrites some images: each becomes that of the next list of its kind, and now and
  // then one is removed and put again. The store has the same lists as before, but for
  // one that is taken twice while another is left out. Returns how many.
  U64 churn(KivStash::StoreWriter& writer);

  std::size_t lists(CommunityKind kind) const;

 private:
  template <class List>
  struct Kept {
    std::vector<Kiv::Ptr<const List>> lists;
    std::unordered_set<const List*> seen;
    std::vector<KivStash::ImageId> images;
    std::size_t next = 0;   // the image that is rewritten next
    std::size_t shift = 1;  // how far image and list are apart after that
  };

  template <class List>
  void take(const List& list);
  template <class List>
  static void put(KivStash::StoreWriter& writer, Kept<List>& kept);
  template <class List>
  static bool rewrite(KivStash::StoreWriter& writer, Kept<List>& kept);

  // Before the lists, which leave their tables at the end.
  const CommunityTables tables_;
  // In the order of the kinds.
  std::tuple<Kept<Routing::Bgp::CommList>, Kept<Routing::Bgp::LargeCommList>,
             Kept<Routing::Bgp::ExtCommList>, Kept<Routing::Bgp::ExtCommIp6List>>
      kept_;
};

}  // namespace CommTool

#endif
