// Collects the lists of routing data and keeps images of them in a store.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_STORED_LISTS_H
#define TOOLS_BGP_COMMUNITIES_STORE_STORED_LISTS_H

#include <tuple>
#include <unordered_set>
#include <vector>

#include "KivStash/StoreWriter.h"
#include "tools/bgp-communities/bgp/Route.h"
#include "tools/bgp-communities/rib/CommunityTables.h"

namespace CommTool {

// As a RouteSink it collects each different list of the routes once, in the order of the data;
// withdrawals remove nothing. Then it writes images of the lists to a store and can rewrite them
// again and again, so that readers can be tested. Owner thread only.
class StoredLists : public RouteSink {
 public:
  // Interns the lists of the batch and keeps the new ones.
  void handleRoutes(const RouteBatch& batch) override;

  // Writes an image of each list. Throws the exceptions of KivStash::StoreWriter; if the store is
  // full, the images that fitted stay in it.
  void put(KivStash::StoreWriter& writer);
  // Rewrites one image of each kind that has lists. The image gets the contents of another list of
  // its kind. Sometimes the image is removed and a new one is put instead. Over a full round the
  // store has the same lists as before; in between, a list may be present twice and another list
  // not at all. Returns the number of images that were rewritten. Throws as put() does.
  U64 churn(KivStash::StoreWriter& writer);

  // The number of different lists of a kind that were collected.
  std::size_t lists(CommunityKind kind) const;

 private:
  // The lists of one kind, and the images with the same indexes.
  template <class List>
  struct Kept {
    std::vector<Kiv::Ptr<const List>> lists;
    std::unordered_set<const List*> seen;
    std::vector<KivStash::ImageId> images;
    std::size_t next = 0;   // index of the image that is rewritten next
    std::size_t shift = 1;  // the distance between the indexes of an image and its new list
  };

  template <class List>
  void take(const List& list);
  template <class List>
  static void put(KivStash::StoreWriter& writer, Kept<List>& kept);
  template <class List>
  static bool rewrite(KivStash::StoreWriter& writer, Kept<List>& kept);

  // Declared before the lists, so that they are released before the tables are destroyed.
  const CommunityTables tables_;
  // One element for each kind, in the order of the kinds.
  std::tuple<Kept<Routing::Bgp::CommList>, Kept<Routing::Bgp::LargeCommList>,
             Kept<Routing::Bgp::ExtCommList>, Kept<Routing::Bgp::ExtCommIp6List>>
      kept_;
};

}  // namespace CommTool

#endif
